#include "platform/core/DRLog.h"

#include "platform/core/DRFileDescriptor.h"
#include "platform/core/DRUtf8.h"

#include <QDateTime>

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcMigrate, "migrate")

namespace {

struct Sinks {
    DRLog::Verbosity verbosity = DRLog::Verbosity::Normal;
    DRFileDescriptor logFile;
};

/// Qt's message handler is a plain function, so what it writes to cannot be handed to it. Set once, before other
/// threads are.
Sinks& sinks()
{
    static Sinks instance;
    return instance;
}

/// One write per line, so that lines of several threads do not mix.
void writeLine(int descriptor, const QString& line)
{
    const QByteArray bytes = DRUtf8::encode(line) + '\n';
    static_cast<void>(!::write(descriptor, bytes.constData(), static_cast<size_t>(bytes.size())));
}

bool reachesErrorStream(QtMsgType type)
{
    switch (sinks().verbosity) {
    case DRLog::Verbosity::Quiet:
        return false;
    case DRLog::Verbosity::Verbose:
        return true;
    case DRLog::Verbosity::Normal:
        return type != QtDebugMsg && type != QtInfoMsg;
    }
    return true;
}

void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    const QString text = withoutControlCharacters(message);
    if (reachesErrorStream(type)) {
        writeLine(STDERR_FILENO, u"phone-migrate: "_s + text);
    }
    if (sinks().logFile.isOpen()) {
        const QString time = QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs);
        writeLine(sinks().logFile.number(), u"%1 %2: %3"_s.arg(time, QString::fromUtf8(context.category), text));
    }
}

bool isControlCharacter(QChar character)
{
    /// Beside C0 and C1: marks, overrides and isolates of writing direction, and the separators that end a line.
    struct Range {
        char16_t first;
        char16_t last;
    };
    constexpr std::array kRanges{Range{u'\0', u'\x1F'},       Range{u'\x7F', u'\u009F'},   Range{u'\u061C', u'\u061C'},
                                 Range{u'\u200E', u'\u200F'}, Range{u'\u2028', u'\u202E'}, Range{u'\u2066', u'\u2069'}};
    const char16_t unit = character.unicode();
    return std::ranges::any_of(kRanges,
                               [unit](const Range& range) { return unit >= range.first && unit <= range.last; });
}

} // namespace

bool DRLog::install(Verbosity verbosity, const QString& logFile)
{
    sinks().verbosity = verbosity;
    if (!logFile.isEmpty()) {
        // The user named this file, so a link there is followed.
        sinks().logFile = DRFileDescriptor(
            ::open(nativePath(logFile).constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, S_IRUSR | S_IWUSR));
    }
    qInstallMessageHandler(handleMessage);
    return logFile.isEmpty() || sinks().logFile.isOpen();
}

QString withoutControlCharacters(const QString& text)
{
    QString result = text;
    std::ranges::replace_if(result, isControlCharacter, QChar(u'?'));
    return result;
}
