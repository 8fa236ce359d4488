#ifndef UNITFLOW_FILEHOST_TREE_FILETREE_H
#define UNITFLOW_FILEHOST_TREE_FILETREE_H

#include "filehost/Export.h"
#include "filehost/json/JsonEdits.h"
#include "filehost/json/JsonText.h"
#include "host/ConfigurationAndProcessDataBase.h"

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace filehost::tree {

/// A text and what was written over it: what all nodes of one tree share. The text stays as it is;
/// only properties that differ from it are kept.
class UNITFLOW_FILEHOST_EXPORT FileTree {
public:
    using Index = json::JsonText::Index;

    /// A property that was written and differs from the text.
    struct Written {
        QString key;
        QVariant value;
        Index inText; ///< its value there; `none` when it has none
    };

    /// `path` is the file that the text came from; empty when it came from none.
    FileTree(std::shared_ptr<const json::JsonText> text, QString path);

    const json::JsonText& text() const { return *original; }
    const QString& path() const { return filePath; }

    /// What the tree's file holds as far as the tree knows: the text it was read from, or what was
    /// made of the tree since. Null without a file.
    const std::shared_ptr<const json::JsonText>& inFile() const { return fileText; }
    void setInFile(std::shared_ptr<const json::JsonText> text);

    /// Null unless it was written and differs from the text.
    const QVariant* written(Index node, const QString& key) const;

    /// Keeps a normalized value over the text.
    void write(Index node, const Written& written);

    /// Forgets what was written, because the text says the same.
    void unwrite(Index node, const QString& key);

    /// By node; the properties of each in the order written.
    using Changes = std::map<Index, std::vector<Written>>;
    const Changes& changes() const { return writtenOver; }

    /// The text with everything that was written.
    QByteArray render() const;

private:
    std::shared_ptr<const json::JsonText> original;
    std::shared_ptr<const json::JsonText> fileText;
    QString filePath;
    Changes writtenOver;
};

/// The problem of what was to be stored under a name but is no tree of this host.
Problem notATree(const QString& name);

/// A node of a tree that lies in a JSON text. Making one costs nothing but memory for itself: what
/// it holds is looked up when it is first asked for, values are decoded each time. It keeps the
/// text alive, and its children, but no child keeps its parent.
class UNITFLOW_FILEHOST_EXPORT FileTreeNode final : public ConfigurationAndProcessDataBase {
public:
    using Index = json::JsonText::Index;

    /// The root of a fresh tree.
    static BaseClassSharedPointer makeRoot(std::shared_ptr<const json::JsonText> text,
                                           const QString& path);

    /// The tree that the node is the root of; null when it is no root, or not of this host.
    static FileTree* treeOf(const BaseClassSharedPointer& root);

    FileTreeNode(std::shared_ptr<FileTree> tree, Index index, int level);

    const QHash<QString, BaseClassSharedPointer>& children() const;

    /// Child names joined by "/"; nothing for an empty URL. Where a name has a "/" itself, the
    /// shortest names that lead to a node win.
    BaseClassSharedPointer getChildData(const QString& url) override;
    bool hasChildData(const QString& url) override;
    QVariant getDataProperty(const QString& key) override;

    /// 2 for a key that is none of a property, and for a value that the file cannot hold.
    int setDataProperty(const QString& key, const QVariant& value) override;

private:
    BaseClassSharedPointer find(QStringView url) const;
    BaseClassSharedPointer child(QStringView name) const;
    BaseClassSharedPointer handedOut(Index child) const;
    BaseClassSharedPointer makeChild(Index child) const;

    std::shared_ptr<FileTree> shared;
    Index index;
    int level; // 1 for the root

    struct Child {
        Index index;
        BaseClassSharedPointer node;
    };

    // Filled as they are asked for; the text never changes.
    mutable std::vector<Child> singly; ///< a few, as long as not all were asked for
    mutable std::optional<QHash<QString, BaseClassSharedPointer>> childNodes;

    // What was found last: a row of a table often asks for the leaf that the row before asked for.
    QString lastUrl;
    BaseClassSharedPointer lastFound;
};

} // namespace filehost::tree

#endif
