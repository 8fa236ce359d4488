#ifndef UNITFLOW_TESTS_FILEHOST_TESTWORKSPACE_H
#define UNITFLOW_TESTS_FILEHOST_TESTWORKSPACE_H

#include "Printers.h"
#include "filehost/Session.h"
#include "filehost/Workspace.h"

#include <QByteArray>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QPair>
#include <QTemporaryDir>
#include <gtest/gtest.h>

/// A workspace in a temporary folder, with a folder beside it that is outside.
class TestWorkspace : public testing::Test {
protected:
    TestWorkspace()
    {
        for (const char* folder : {"configuration", "process", "dependency"}) {
            QDir(root()).mkpath(folder);
        }
    }

    QString root() const { return directory.filePath("workspace"); }
    QString outside() const { return directory.path(); }
    QString path(const QString& name) const { return QDir(root()).filePath(name); }

    void write(const QString& name, const QByteArray& bytes) const
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << name.toStdString();
        file.write(bytes);
    }

    QByteArray read(const QString& name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
    }

    filehost::Workspace workspace() const
    {
        QList<filehost::Problem> problems;
        return *filehost::Workspace::open(root(), problems);
    }

    QDir configuration() const { return {path("configuration")}; }
    QDir process() const { return {path("process")}; }
    QDir dependency() const { return {path("dependency")}; }

    /// Makes everything an hour old, so that any touch shows; gives the state to compare with.
    QMap<QString, QPair<QByteArray, QDateTime>> age() const
    {
        const QDateTime old = QDateTime::currentDateTime().addSecs(-3600);
        for (const QString& file : files()) {
            QFile handle(path(file));
            if (handle.open(QIODevice::ReadWrite)) {
                handle.setFileTime(old, QFileDevice::FileModificationTime);
            }
        }
        return state();
    }

    /// Every file and folder with its bytes and its modification time.
    QMap<QString, QPair<QByteArray, QDateTime>> state() const
    {
        QMap<QString, QPair<QByteArray, QDateTime>> found;
        for (const QString& file : files()) {
            found[file] = {read(file), QFileInfo(path(file)).lastModified()};
        }
        return found;
    }

private:
    QStringList files() const
    {
        QStringList found{"."};
        QDirIterator entries(root(), QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                             QDirIterator::Subdirectories);
        while (entries.hasNext()) {
            found.append(QDir(root()).relativeFilePath(entries.next()));
        }
        return found;
    }

    QTemporaryDir directory;
};

inline filehost::Instance configurationOf(const QString& name)
{
    return {filehost::Kind::Configuration, name};
}

inline filehost::Instance processOf(const QString& name)
{
    return {filehost::Kind::Process, name};
}

#endif
