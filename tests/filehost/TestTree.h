#ifndef UNITFLOW_TESTS_FILEHOST_TESTTREE_H
#define UNITFLOW_TESTS_FILEHOST_TESTTREE_H

#include "filehost/json/JsonText.h"
#include "filehost/tree/FileTree.h"

#include <QByteArray>
#include <QVariant>
#include <gtest/gtest.h>

#include <memory>

/// A text that must be readable.
inline std::shared_ptr<const filehost::json::JsonText> readText(const QByteArray& bytes)
{
    QList<filehost::Problem> problems;
    auto text = filehost::json::JsonText::parse(bytes, {}, problems);
    EXPECT_TRUE(problems.isEmpty()) << bytes.toStdString() << '\n'
                                    << toText(problems.value(0, {})).toStdString();
    return text;
}

/// The value that a piece of JSON stands for.
inline QVariant json(const QByteArray& bytes)
{
    return readText(bytes)->value(filehost::json::JsonText::root);
}

/// A fresh tree on a text, without a file.
inline BaseClassSharedPointer treeOn(const QByteArray& bytes)
{
    return filehost::tree::FileTreeNode::makeRoot(readText(bytes), {});
}

/// The text of a tree with what was written to it.
inline QByteArray textOf(const BaseClassSharedPointer& root)
{
    return filehost::tree::FileTreeNode::treeOf(root)->render();
}

#endif
