// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "platform/QtSettingsStore.h"
#include "project/RecentProjects.h"
#include "support/Cases.h"
#include "support/MemoryStore.h"

#include <QTemporaryDir>

namespace
{

/// What the store holds under the four keys; empty for a missing one.
QStringList Entries(const SettingsStore &store)
{
    QStringList entries;
    for (const char *key : {"RecentProject1", "RecentProject2", "RecentProject3", "RecentProject4"})
        entries << store.Read(QStringLiteral("Recent"), QLatin1String(key)).value_or(QString());
    return entries;
}

void Fill(SettingsStore &store, const QStringList &entries)
{
    for (int i = 0; i < entries.size(); ++i)
        store.Write(QStringLiteral("Recent"), QStringLiteral("RecentProject%1").arg(i + 1),
                    entries[i]);
}

/// Gives its sections in the order of writing.
class OrderlyStore final : public SettingsStore
{
  public:
    QList<Entry> entries;

    std::optional<QString> Read(const QString &, const QString &key) const override
    {
        for (const Entry &entry : entries)
            if (entry.key == key)
                return entry.text;
        return std::nullopt;
    }
    QList<Entry> ReadSection(const QString &) const override { return entries; }
    void Write(const QString &, const QString &, const QString &) override {}
    QString Flush() override { return {}; }
};

} // namespace

class tst_recentprojects : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void Finds()
    {
        MemoryStore store;
        Fill(store, {"/p/a", "/p/b", "/p/C", "/p/c"}); // the last of two equal ones counts
        const std::pair<const char *, int> places[] = {
            {"/p/a", 1}, {"/P/B", 2}, {"/p/c", 4}, {"/p/d", 0}};
        for (const auto &[project, place] : places)
            QCOMPARE(RecentProjects::FindRecentProject(store, project), place);
    }

    void Updates_data()
    {
        const Cases<QStringList, QString, QStringList> row("before", "project", "after");
        row("the first project of all", {}, "a", {"a", "", "", ""});
        row("a new one moves all down", {"a", "b"}, "c", {"c", "a", "b", ""});
        row("a fifth drops the oldest", {"a", "b", "c", "d"}, "e", {"e", "a", "b", "c"});
        row("the first again", {"a", "b", "c", "d"}, "a", {"a", "b", "c", "d"});
        row("the second again", {"a", "b", "c", "d"}, "b", {"b", "a", "c", "d"});
        row("the third again", {"a", "b", "c", "d"}, "c", {"c", "a", "b", "d"});
        row("the fourth again", {"a", "b", "c", "d"}, "d", {"d", "a", "b", "c"});
        row("other letter case is kept", {"a", "b"}, "B", {"B", "a", "", ""});
        row("a gap is not moved by a new one", {"a", "", "c", ""}, "e", {"e", "a", "c", "c"});
        row("a gap moves with an old one", {"a", "", "c", "d"}, "c", {"c", "a", "", "d"});
    }
    void Updates()
    {
        QFETCH(const QStringList, before);
        QFETCH(const QString, project);
        MemoryStore store;
        Fill(store, before);
        RecentProjects::UpdateRecentProjects(store, project);
        QTEST(Entries(store), "after");
    }

    void FillsTheMenuInTheStoresOrder()
    {
        OrderlyStore orderly;
        QCOMPARE(RecentProjects::ListForMenu(orderly), QStringList());
        orderly.entries = {
            {"RecentProject3", "c"}, {"RecentProject1", "a"}, {"RecentProject2", "b"}};
        QCOMPARE(RecentProjects::ListForMenu(orderly), QStringList({"c", "a", "b"}));
        MemoryStore store;
        Fill(store, {"a", "b", "c", "d", "e"});
        QCOMPARE(RecentProjects::ListForMenu(store), QStringList({"a", "b", "c", "d"}));
        Fill(store, {""}); // without a latest project there is no menu
        QCOMPARE(RecentProjects::ListForMenu(store), QStringList());
    }

    void LivesInTheUsersStore()
    {
        QTemporaryDir folder;
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
        {
            QtSettingsStore store;
            store.Write(QStringLiteral("Recently"), QStringLiteral("Other"), QStringLiteral("x"));
            for (const char *project : {"/p/a, b", "/p/\xC3\xA4", "/p/c"})
                RecentProjects::UpdateRecentProjects(store, project);
            QCOMPARE(store.Flush(), QString());
        }
        const QtSettingsStore store;
        QCOMPARE(RecentProjects::ListForMenu(store),
                 QStringList({"/p/c", "/p/\xC3\xA4", "/p/a, b"}));
    }
};

QTEST_APPLESS_MAIN(tst_recentprojects)
#include "tst_recentprojects.moc"
