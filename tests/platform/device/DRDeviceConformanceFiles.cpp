#include "tests/platform/device/DRDeviceConformance.h"

#include "platform/device/DRDCFileProcessor.h"
#include "platform/device/DRDCFilesystem.h"
#include "tests/support/DRTestTable.h"

#include <QDir>
#include <QFile>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString kNotes = u"com.vornmobile.notes"_s;
const QString kNoSpace = u"not enough space on the phone"_s;

/// What the phone gets in place of a file's content; also a moment in the middle of a copy.
class Processor final : public DRDCFileProcessor {
public:
    explicit Processor(std::optional<QByteArray> content, std::function<void()> onAsked = {})
        : m_content(std::move(content)), m_onAsked(std::move(onAsked))
    {
    }
    std::optional<QByteArray> contentForFile(const DRDCFile&) const override
    {
        if (m_onAsked) {
            m_onAsked();
        }
        return m_content;
    }

private:
    std::optional<QByteArray> m_content;
    std::function<void()> m_onAsked;
};

} // namespace

DRDCFilePointer DRDeviceConformance::fileToCopy(const QString& source, const QString& targetPath) const
{
    auto file = DRDCFile::fileWithSourcePath(computerPath(source));
    file->setMetadata(targetPath, QLatin1StringView(DRDCFile::kTargetPath));
    return file;
}

std::optional<QStringList> DRDeviceConformance::runFiles(const std::vector<DRDCFilePointer>& files,
                                                         const QStringList& pathsToDelete)
{
    std::vector<QStringList> results;
    const auto handler = [&results](const DRDCFileFailures& failures) {
        QStringList lines;
        for (const DRDCFileFailure& failure : failures.value()) {
            const QVariant path = failure.file->metadataForKey(QLatin1StringView(DRDCFile::kTargetPath));
            lines.append(path.toString() + u": "_s + failure.reason);
        }
        results.push_back(lines);
    };
    DRDCFilesystem& filesystem = m_phone->device()->preferredFilesystem();
    const auto task = m_phone->device()->requestTask();
    task->syncContentWithDevice(m_phone->device(), filesystem, files, pathsToDelete, handler);
    m_queue->runAll();
    return results.size() == 1 && m_lastProgress == 1.0 ? std::optional(results.front()) : std::nullopt;
}

void DRDeviceConformance::copiesFiles_data()
{
    using Files = QMap<QString, QByteArray>;
    using Pairs = QList<std::pair<QString, QString>>;
    const DRTestTable<Pairs, Files, QStringList> row("files", "added", "failures"); // files: source and target path

    const QString media = u"TarvexTransfer/Media/"_s;
    row("nothing", {}, {}, {});
    row("new", {{u"a"_s, media + u"A.JPG"_s}}, {{media + u"A.JPG"_s, "a"}}, {});
    row("different of that name", {{u"a"_s, u"IMG.JPG"_s}}, {{u"IMG (2).JPG"_s, "a"}}, {});
    row("same size, different", {{u"six"_s, u"IMG.JPG"_s}}, {{u"IMG (2).JPG"_s, "number"}}, {});
    row("identical", {{u"phone's"_s, u"IMG.JPG"_s}}, {}, {});
    row("names taken by earlier ones", {{u"a"_s, u"IMG.JPG"_s}, {u"b"_s, u"IMG.JPG"_s}, {u"a"_s, u"IMG.JPG"_s}},
        {{u"IMG (2).JPG"_s, "a"}, {u"IMG (3).JPG"_s, "b"}}, {});
    row("unusable sources, the others go on",
        {{u"missing"_s, u"x"_s}, {u"folder"_s, u"y"_s}, {u"link"_s, u"z"_s}, {u"a"_s, u"ok"_s}}, {{u"ok"_s, "a"}},
        {u"x: the file cannot be read"_s, u"y: the file cannot be read"_s, u"z: the file cannot be read"_s});
    row("hostile names", {{u"a"_s, u"../../up.jpg"_s}, {u"a"_s, u"/top.jpg"_s}, {u"a"_s, u"//."_s}},
        {{u"_/_/up.jpg"_s, "a"}, {u"top.jpg"_s, "a"}}, {u"//.: it has no name for the phone"_s});
    row("no space, the smaller one goes on", {{u"large"_s, u"large"_s}, {u"a"_s, u"small"_s}}, {{u"small"_s, "a"}},
        {u"large: "_s + kNoSpace});
    row("space is counted", {{u"half"_s, u"1"_s}, {u"half"_s, u"2"_s}}, {{u"1"_s, QByteArray(600, 'h')}},
        {u"2: "_s + kNoSpace});
}

void DRDeviceConformance::copiesFiles()
{
    using Files = QMap<QString, QByteArray>;
    using Pairs = QList<std::pair<QString, QString>>;
    QFETCH(const Pairs, files);
    QFETCH(const Files, added);
    const QMap<QString, QByteArray> sources{{u"a"_s, "a"},
                                            {u"b"_s, "b"},
                                            {u"six"_s, "number"},
                                            {u"phone's"_s, "phone!"},
                                            {u"half"_s, QByteArray(600, 'h')},
                                            {u"large"_s, QByteArray(1001, 'l')}};
    for (auto source = sources.cbegin(); source != sources.cend(); ++source) {
        writeOnComputer(source.key(), source.value());
    }
    QVERIFY(QDir(m_computer->path()).mkdir(u"folder"_s) && QFile::link(computerPath(u"a"_s), computerPath(u"link"_s)));
    makePhone({.packets = {}, .storage = {{u"IMG.JPG"_s, "phone!"}}});
    std::vector<DRDCFilePointer> records;
    for (const auto& [source, target] : files) {
        records.push_back(fileToCopy(source, target));
    }

    const auto failures = runFiles(records);
    QVERIFY(failures);
    QTEST(*failures, "failures");
    Files expected = added;
    expected.insert(u"IMG.JPG"_s, "phone!");
    QCOMPARE(m_phone->content().storage, expected);
    QCOMPARE(readOnComputer(u"a"_s), "a");
    qsizetype placed = 0;
    for (std::size_t index = 0; index < records.size(); ++index) {
        const QString place = records[index]->metadataForKey(QLatin1StringView(DRDCFile::kPlaceOnPhone)).toString();
        placed += place.isEmpty() ? 0 : 1;
        QVERIFY(place.isEmpty() || expected.value(place) == sources.value(files[static_cast<qsizetype>(index)].first));
    }
    QCOMPARE(placed, files.size() - failures->size());
}

/// As on a phone that fills up in a way that was not foreseen.
void DRDeviceConformance::copyThatFailsInTheMiddle()
{
    makePhone({}, 1'000'000);
    writeOnComputer(u"large"_s, QByteArray(300'000, 'l'));
    writeOnComputer(u"small"_s, QByteArray(1000, 's'));
    std::optional<QStringList> failures;
    {
        const auto limit = m_phone->failWritesAfter(200'000);
        failures = runFiles({fileToCopy(u"large"_s, u"d/large"_s), fileToCopy(u"small"_s, u"d/small"_s)});
    }
    QVERIFY(failures);
    QCOMPARE(failures->size(), 1);
    QVERIFY(failures->front().startsWith(u"d/large: it cannot be written"_s));
    QCOMPARE(m_phone->content().storage, (QMap<QString, QByteArray>{{u"d/small"_s, QByteArray(1000, 's')}}));
}

void DRDeviceConformance::deletesFiles()
{
    const DRPhoneContent content{.packets = {{kNotes, "n"}},
                                 .storage = {{u"d/old.m3u"_s, QByteArray(900, 'o')}, {u"d/keep"_s, "k"}}};
    makePhone(content);
    writeOnComputer(u"a"_s, QByteArray(900, 'a'));
    const QString outside = u"../packets/%1/fullbackupdata"_s.arg(kNotes);
    const auto failures = runFiles({fileToCopy(u"a"_s, u"a"_s)}, {u"d/old.m3u"_s, u"d/gone"_s, u"d"_s, outside});
    QVERIFY(failures);
    QCOMPARE(failures->size(), 2);
    QVERIFY(failures->at(0).startsWith(u"d: "_s) && failures->at(1).startsWith(outside));
    const DRPhoneContent expected{.packets = content.packets,
                                  .storage = {{u"a"_s, QByteArray(900, 'a')}, {u"d/keep"_s, "k"}}};
    QCOMPARE(m_phone->content(), expected);
}

void DRDeviceConformance::phoneThatVanishesWhileCopying()
{
    makePhone({});
    const auto made = [this](const QString& target, std::optional<QByteArray> content, bool vanishes) {
        auto file = fileToCopy(u"none"_s, target);
        file->addFileProcessor(std::make_shared<Processor>(std::move(content), vanishes ? [this] { m_phone->vanish(); }
                                                                                        : std::function<void()>()));
        return file;
    };
    const auto first = runFiles({made(u"list.m3u"_s, "#EXTM3U\n", false), made(u"bad.m3u"_s, std::nullopt, false)});
    QCOMPARE(first, QStringList(u"bad.m3u: the file cannot be read"_s));
    QCOMPARE(m_phone->content().storage, (QMap<QString, QByteArray>{{u"list.m3u"_s, "#EXTM3U\n"}}));

    const auto second = runFiles({made(u"1"_s, "1", false), made(u"2"_s, "2", true), made(u"3"_s, "3", false)});
    QVERIFY(second);
    QCOMPARE(second->size(), 2);
    QVERIFY(second->at(0).startsWith(u"2: "_s) && second->at(1).startsWith(u"3: "_s));
}
