#ifndef UNITFLOW_FACTORY_H
#define UNITFLOW_FACTORY_H

#include <QHash>
#include <QString>

#include <cstddef>
#include <memory>
#include <unordered_map>

namespace VelmarFactories {

/// Creates objects of classes derived from `Base` by type name. There is one registry for each
/// instantiation; it lives from its first use until the library is unloaded.
///
/// Registering is not synchronized: do it while the library loads, or before a second thread
/// creates objects.
template <class Base, class... Args>
class Factory {
public:
    class AbstractCreator {
    public:
        /// A new object, owned by the caller.
        virtual Base* create(Args... args) const = 0;
        virtual ~AbstractCreator() = default;
    };

    template <class T>
    class Creator : public AbstractCreator {
    public:
        Base* create(Args... args) const override { return new T(args...); }
    };

    /// Hashes with a fixed seed, so that a registry is laid out alike in every process.
    struct KeyHasher {
        std::size_t operator()(const QString& key) const noexcept { return qHash(key, 0); }
    };

    using Registry = std::unordered_map<QString, std::unique_ptr<AbstractCreator>, KeyHasher>;

    static Registry& instance()
    {
        static Registry registry = [] {
            Registry empty;
            empty.max_load_factor(1.0F);
            return empty;
        }();
        return registry;
    }

    /// Makes `create(key, ...)` return new objects of `T`; an earlier registration under `key` is
    /// replaced.
    template <class T>
    static void registerType(const QString& key)
    {
        instance()[key] = std::make_unique<Creator<T>>();
    }

    /// A new object owned by the caller, null when `key` is not registered. Keys are compared
    /// exactly, case included.
    static Base* create(const QString& key, Args... args)
    {
        const Registry& registry = instance();
        const auto entry = registry.find(key);
        return entry == registry.end() ? nullptr : entry->second->create(args...);
    }
};

} // namespace VelmarFactories

#endif
