#include "tests/platform/folder_phone/DRFolderPhoneUnderTest.h"

#include "platform/folder_phone/DRFolderPhone.h"
#include "tests/support/DRTestFiles.h"

#include <QDirIterator>

#include <csignal>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

void put(const QString& path, const QByteArray& bytes)
{
    if (!writeFile(path, bytes)) {
        qFatal("cannot set up a phone");
    }
}

QMap<QString, QByteArray> filesBelow(const QString& folder)
{
    QMap<QString, QByteArray> files;
    QDirIterator entries(folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString path = entries.next();
        files.insert(QDir(folder).relativeFilePath(path), readFile(path));
    }
    return files;
}

/// The system's limit on the size of files that this process writes.
class FileSizeLimit {
public:
    explicit FileSizeLimit(quint64 bytes) : m_oldHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        ::getrlimit(RLIMIT_FSIZE, &m_oldLimit);
        const rlimit limit{.rlim_cur = bytes, .rlim_max = m_oldLimit.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_oldLimit);
        static_cast<void>(std::signal(SIGXFSZ, m_oldHandler));
    }

private:
    using SignalHandler = void (*)(int);

    SignalHandler m_oldHandler;
    rlimit m_oldLimit{};
};

} // namespace

DRFolderPhoneUnderTest::DRFolderPhoneUnderTest(const DRPhoneContent& content,
                                               quint64 capacityBytes,
                                               DRTaskQueue& queue,
                                               DRNotificationCenter& center)
{
    put(path(u"phone.json"_s), "{\"memoryUsableCapacity\": " + QByteArray::number(capacityBytes) + '}');
    for (auto packet = content.packets.cbegin(); packet != content.packets.cend(); ++packet) {
        put(path(u"packets/%1/fullbackupdata"_s.arg(packet.key())), packet.value());
    }
    for (auto file = content.storage.cbegin(); file != content.storage.cend(); ++file) {
        put(path(u"storage/"_s + file.key()), file.value());
    }
    m_phone = DRFolderPhone::open(path(), queue, center);
}

DRDCDevicePointer DRFolderPhoneUnderTest::device()
{
    return m_phone;
}

DRPhoneContent DRFolderPhoneUnderTest::content() const
{
    DRPhoneContent content{.packets = {}, .storage = filesBelow(path(u"storage"_s))};
    const auto packetFiles = filesBelow(path(u"packets"_s));
    for (auto file = packetFiles.cbegin(); file != packetFiles.cend(); ++file) {
        QString name = file.key();
        content.packets.insert(name.remove(u"/fullbackupdata"_s), file.value());
    }
    return content;
}

void DRFolderPhoneUnderTest::vanish()
{
    QDir(path()).removeRecursively();
}

std::shared_ptr<void> DRFolderPhoneUnderTest::failWritesAfter(quint64 bytes)
{
    return std::make_shared<FileSizeLimit>(bytes);
}

QString DRFolderPhoneUnderTest::path(const QString& relativePath) const
{
    return m_parent.filePath(relativePath.isEmpty() ? u"phone"_s : u"phone/"_s + relativePath);
}
