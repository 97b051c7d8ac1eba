#pragma once

#include <QtCore/QLocale>

namespace zelvora {

/// Shows the views' own words in the language of `locale`, where they are translated to it (German
/// and Hebrew), else in English. At the start the language is the system's. Main thread.
///
/// Call the QML engine's `retranslate()` afterwards when pages are shown already.
void setTranslationLocale(const QLocale& locale);

}  // namespace zelvora
