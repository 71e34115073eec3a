#include "platform/core/DRFiles.h"
#include "platform/core/DRPrivateFolder.h"
#include "tests/support/DRTestTable.h"

#include <QDir>
#include <QTemporaryDir>

#include <limits>
#include <sys/stat.h>
#include <unistd.h>
#include <variant>

using namespace Qt::StringLiterals;
using Refusal = DRPrivateFolder::Refusal;

Q_DECLARE_METATYPE(Refusal::Reason)

namespace {

QByteArray native(const QString& path)
{
    return QFile::encodeName(path);
}

mode_t modeOf(const QString& path)
{
    struct stat status = {};
    return ::lstat(native(path).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

QByteArray contentOf(const QString& path)
{
    return DRFiles::readRegularFile(path, std::numeric_limits<qint64>::max()).value_or("unreadable");
}

} // namespace

class TestFiles : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder.emplace();
        QVERIFY(DRFiles::writeAtomically(path(u"file"_s), "old"));
        QVERIFY(QFile::link(path(u"file"_s), path(u"link"_s)));
    }

    void atomicWriteReplacesTheNameItself()
    {
        ::chmod(native(path(u"file"_s)).constData(), 0644);
        QVERIFY(DRFiles::writeAtomically(path(u"link"_s), "new"));
        QCOMPARE(contentOf(path(u"link"_s)), "new");
        QCOMPARE(contentOf(path(u"file"_s)), "old");
        QCOMPARE(modeOf(path(u"link"_s)), mode_t{0600});
    }

    void failedAtomicWriteLeavesNothingBehind()
    {
        QVERIFY(QDir().mkpath(path(u"folder/inside"_s)));
        QVERIFY(!DRFiles::writeAtomically(path(u"folder"_s), "new"));
        QVERIFY(!DRFiles::writeAtomically(path(u"missing/file"_s), "new"));
        QVERIFY(!DRFiles::writeAtomically(path(u"file"_s) + QChar(u'\0') + u"x"_s, "new"));
        QCOMPARE(contentOf(path(u"file"_s)), "old");
        QCOMPARE(names(), (QStringList{u"file"_s, u"folder"_s, u"link"_s}));
    }

    void copyTakesRegularFilesToNewNamesOnly()
    {
        const QByteArray bytes = QByteArray("0123456789").repeated(30'000);
        QVERIFY(DRFiles::writeAtomically(path(u"large"_s), bytes));
        QVERIFY(DRFiles::copyToNewFile(path(u"large"_s), path(u"copy"_s)));
        QCOMPARE(contentOf(path(u"copy"_s)), bytes);
        QCOMPARE(modeOf(path(u"copy"_s)), mode_t{0600});
        QVERIFY(!DRFiles::copyToNewFile(path(u"link"_s), path(u"copy2"_s)));
        QVERIFY(!DRFiles::copyToNewFile(path(u"file"_s), path(u"copy"_s)));
        QVERIFY(!DRFiles::copyToNewFile(path(u"file"_s), path(u"link"_s)));
        QCOMPARE(contentOf(path(u"copy"_s)), bytes);
        // Files of the system say that they are empty and are not.
        QVERIFY(DRFiles::copyToNewFile(u"/proc/self/maps"_s, path(u"maps"_s)));
        QVERIFY(!contentOf(path(u"maps"_s)).isEmpty());
    }

    void readingStopsAtTheGivenSize()
    {
        QVERIFY(DRFiles::readRegularFile(path(u"file"_s), 3));
        QVERIFY(!DRFiles::readRegularFile(path(u"file"_s), 2));
    }

    void removedTreeDoesNotTakeWhatItsLinksShow()
    {
        QVERIFY(QDir().mkpath(path(u"kept"_s)) && QDir().mkpath(path(u"tree/deep"_s)));
        QVERIFY(QFile::link(path(u"kept"_s), path(u"tree/deep/link"_s)));
        QVERIFY(DRFiles::writeAtomically(path(u"kept/file"_s), "kept"));
        QVERIFY(DRFiles::removeTree(path(u"tree"_s)));
        QVERIFY(DRFiles::removeTree(path(u"tree"_s)));
        QVERIFY(!QFileInfo::exists(path(u"tree"_s)));
        QCOMPARE(contentOf(path(u"kept/file"_s)), "kept");
    }

    void privateFolderIsMadeForItsOwnerAlone()
    {
        const auto lock = DRPrivateFolder::lock(path(u"a/b/c"_s), u"contents"_s);
        QVERIFY(std::holds_alternative<DRPrivateFolder>(lock));
        for (const QString& made : {u"a"_s, u"a/b"_s, u"a/b/c"_s}) {
            QCOMPARE(modeOf(path(made)), mode_t{0700});
        }
    }

    void foreignFolderIsRefused_data()
    {
        const DRTestTable<QString, QString, QString> row("spoiled", "by", "word");
        row("a link", u"work"_s, u"link"_s, u"link"_s);
        row("a file", u"work"_s, u"file"_s, u"not a folder"_s);
        row("open to others", u"work"_s, u"mode"_s, u"chmod 700"_s);
        row("contents are a link", u"work/contents"_s, u"link"_s, u"link"_s);
        row("contents are open", u"work/contents"_s, u"mode"_s, u"chmod 700"_s);
        if (::geteuid() == 0) {
            row("of another user", u"work"_s, u"owner"_s, u"another user"_s);
        }
    }

    void foreignFolderIsRefused()
    {
        QFETCH(QString, spoiled);
        QFETCH(QString, by);
        QFETCH(QString, word);
        const QByteArray target = native(path(spoiled));
        QVERIFY(DRPrivateFolder::make(path(u"elsewhere"_s)) && DRPrivateFolder::make(path(u"work/contents"_s)));
        if (by == u"link" || by == u"file") {
            QVERIFY(DRFiles::removeTree(path(spoiled)));
            QVERIFY(by == u"link" ? QFile::link(path(u"elsewhere"_s), path(spoiled))
                                  : DRFiles::writeAtomically(path(spoiled), ""));
        }
        QVERIFY(by != u"mode" || ::chmod(target.constData(), 0750) == 0);
        QVERIFY(by != u"owner" || ::chown(target.constData(), 12345, 12345) == 0);
        const auto lock = DRPrivateFolder::lock(path(u"work"_s), u"contents"_s);
        const auto* refusal = std::get_if<Refusal>(&lock);
        QVERIFY(refusal != nullptr);
        QCOMPARE(refusal->reason, Refusal::Reason::NotOurs);
        QVERIFY2(refusal->message.contains(word) && refusal->message.contains(path(spoiled)),
                 qPrintable(refusal->message));
    }

    void secondRunIsRefusedUntilTheFirstEnds()
    {
        {
            const auto first = DRPrivateFolder::lock(path(u"work"_s), QString());
            QVERIFY(std::holds_alternative<DRPrivateFolder>(first));
            const auto second = DRPrivateFolder::lock(path(u"work"_s), QString());
            QCOMPARE(std::get<Refusal>(second).reason, Refusal::Reason::InUse);
        }
        QVERIFY(std::holds_alternative<DRPrivateFolder>(DRPrivateFolder::lock(path(u"work"_s), QString())));
    }

    void folderThatCannotBeMadeIsSaid()
    {
        const auto lock = DRPrivateFolder::lock(path(u"file/work"_s), QString());
        QCOMPARE(std::get<Refusal>(lock).reason, Refusal::Reason::CannotCreate);
    }

private:
    QString path(const QString& name) const { return m_folder->filePath(name); }
    QStringList names() const
    {
        return QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    std::optional<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(TestFiles)

#include "TestFiles.moc"
