#include <ZelvoraSDK/ui/platform_provider.h>

#include <QObject>
#include <utility>

namespace zelvora {
namespace {

constexpr char kName[] = "zelvoraPlatformProvider";

/// Lives and goes with its engine.
class ProviderHolder final : public QObject {
 public:
  ProviderHolder(QQmlEngine& engine, PlatformProvider theProvider)
      : QObject(&engine), provider(std::move(theProvider)) {
    setObjectName(QLatin1String(kName));
  }

  const PlatformProvider provider;
};

}  // namespace

void setPlatformProvider(QQmlEngine& engine, PlatformProvider provider) {
  new ProviderHolder(engine, std::move(provider));
}

const PlatformProvider* platformProvider(const QQmlEngine* engine) {
  if (!engine) return nullptr;
  const auto* found = engine->findChild<QObject*>(QLatin1String(kName), Qt::FindDirectChildrenOnly);
  const auto* holder = dynamic_cast<const ProviderHolder*>(found);
  return holder ? &holder->provider : nullptr;
}

}  // namespace zelvora
