#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtQml/QtQml>

#include <ZelvoraSDK/outcome/audit_event.h>

namespace zelvora {

/// A ZelvoraAuditEvent as QML sees it.
struct AuditValue {
  Q_GADGET
  QML_VALUE_TYPE(zelvoraAuditEvent)
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
  QML_STRUCTURED_VALUE  // untried: this project is built with Qt 6.4
#endif
  Q_PROPERTY(QString kind MEMBER kind CONSTANT)
      Q_PROPERTY(qsizetype transcriptLength MEMBER transcriptLength CONSTANT)
          Q_PROPERTY(qsizetype audioBytes MEMBER audioBytes CONSTANT)
              Q_PROPERTY(QString message MEMBER message CONSTANT)

                  public :
      /// "localSTTUsed", "cloudSTTRequested", "cloudSTTUsed" or "cloudSTTFailed".
      QString kind;
  qsizetype transcriptLength = 0;  ///< In characters, of the two that have used a transcript.
  qsizetype audioBytes = 0;        ///< Of "cloudSTTRequested".
  QString message;                 ///< Of "cloudSTTFailed".

  bool operator==(const AuditValue&) const = default;
};

[[nodiscard]] AuditValue auditValue(const ZelvoraAuditEvent& event);

}  // namespace zelvora
