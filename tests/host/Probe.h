#ifndef UNITFLOW_TESTS_HOST_PROBE_H
#define UNITFLOW_TESTS_HOST_PROBE_H

#include "Commands/CommandBase.h"
#include "DependencyWalkerFactory.h"
#include "EngineTest.h"

#include <memory>
#include <utility>

namespace testhost {

/// A command that records "execute(label)" with the host and does nothing else. Its description is
/// a leaf with the label as value; "@result": false makes it fail, "@changed": true makes it report
/// a change.
class ProbeCommand final : public CommandBase {
public:
    explicit ProbeCommand(const BaseClassSharedPointer& description);

    bool executeCommand(const BaseClassSharedPointer& sourceRoot,
                        const BaseClassSharedPointer& targetRoot, const QString& url,
                        QVariantList& results, bool& changed, const QVariantList& parameters,
                        const QSharedPointer<UnitManipulatorBase>& manipulator) override;
    /// "label;"
    QString getCommandAsString() const override;
    bool initCommand(const BaseClassSharedPointer& description) override;

private:
    QString label;
    bool result = true;
    bool changes = false;
};

/// A type that is registered for as long as this lives; what stood under the key comes back
/// afterwards.
template <class Factory, class Type>
class Registered {
public:
    explicit Registered(const QString& type)
        : key(type), before(std::move(Factory::instance()[type]))
    {
        Factory::template registerType<Type>(key);
    }
    ~Registered()
    {
        if (before) {
            Factory::instance()[key] = std::move(before);
        } else {
            Factory::instance().erase(key);
        }
    }
    Registered(const Registered&) = delete;
    Registered& operator=(const Registered&) = delete;

private:
    QString key;
    std::unique_ptr<typename Factory::AbstractCreator> before;
};

/// A type that is not known for as long as this lives.
template <class Factory>
class Unregistered {
public:
    explicit Unregistered(const QString& type)
        : key(type), before(std::move(Factory::instance()[type]))
    {
        Factory::instance().erase(key);
    }
    ~Unregistered() { Factory::instance()[key] = std::move(before); }
    Unregistered(const Unregistered&) = delete;
    Unregistered& operator=(const Unregistered&) = delete;

private:
    QString key;
    std::unique_ptr<typename Factory::AbstractCreator> before;
};

/// A test whose descriptions may hold probes, up to three in one node.
class GraphTest : public EngineTest {
protected:
    /// The labels of the probes that were executed since the last calls were taken.
    QStringList executed();

private:
    Registered<DependencyWalkerFactory::CommandFactory, ProbeCommand> first{
        QStringLiteral("Probe")};
    Registered<DependencyWalkerFactory::CommandFactory, ProbeCommand> second{
        QStringLiteral("Probe2")};
    Registered<DependencyWalkerFactory::CommandFactory, ProbeCommand> third{
        QStringLiteral("Probe3")};
};

} // namespace testhost

#endif
