#include "app/sample/DRSampleCalls.h"

#include "app/sample/DRSampleIPhoneBackup.h"
#include "app/sample/DRSampleRandom.h"
#include "platform/sqlite/DRDatabase.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr quint64 kSeed = 20140612;
constexpr int kCallsPerScale = 150;
constexpr int kSecondsPerDay = 86'400;
constexpr qint64 kDaysOfCalls = 200;
constexpr qint64 kNobody = -1; // for calls with people outside the address book

// What the phone notes about a call; an odd number means that it went out.
constexpr qint64 kIncoming = 4;
constexpr qint64 kOutgoing = 5;
constexpr qint64 kBlocked = 8;
constexpr qint64 kFaceTimeIncoming = 16;
constexpr qint64 kFaceTimeOutgoing = 17;
constexpr std::array<qint64, 14> kUsualFlags{
    kIncoming, kIncoming, kIncoming, kIncoming, kOutgoing,         kOutgoing,         kOutgoing,
    kOutgoing, 0,         1,         kBlocked,  kFaceTimeIncoming, kFaceTimeOutgoing, kIncoming,
};

struct Call {
    QString address; ///< null when the phone did not get one
    QDateTime date;
    qint64 durationSeconds = 0; ///< 0 when nobody answered
    qint64 flags = 0;
    qint64 personId = kNobody;
};

struct HardCall {
    QStringView address; ///< null when there is none
    qint64 hoursAgo;
    qint64 durationSeconds;
    qint64 flags;
};
constexpr std::array kHardCalls{
    HardCall{u"+46705550101", 44'000, 61, kOutgoing}, // five years ago
    HardCall{u"", 4'790, 17, kIncoming},              // the caller hid the number: an empty one, and none
    HardCall{{}, 4'789, 0, kIncoming},
    HardCall{{}, 4'788, 0, kBlocked},
    HardCall{u"*100#", 4'787, 3, kOutgoing},
    HardCall{u"+15550100116,,1234#", 4'786, 754, kOutgoing},
    HardCall{u"anna@example.com", 4'785, 1'861, kFaceTimeIncoming},
    HardCall{u"o'brien@example.com", 4'784, 0, kFaceTimeOutgoing},
    HardCall{u"112", 4'783, 95, 1},
    HardCall{u"5550104", 4'782, 0, 0},
    HardCall{u"5550104", 4'782, 40, 0},                   // twice in the same second
    HardCall{u"0018005550199", 4'781, 35'999, kOutgoing}, // ten hours
    HardCall{u"Unknown", 4'780, 12, kIncoming},
    HardCall{u"\u0660\u0665\u0665\u0665\u0660\u0661", 4'779, 8, kIncoming}, // Arabic digits
};

QString dialled(const QString& number)
{
    QString digits = number;
    return digits.removeIf([](QChar character) { return QStringView(u" ()-").contains(character); });
}

Call composeCall(const std::vector<DRSampleCallee>& callees, const QDateTime& date, DRSampleRandom& random)
{
    const DRSampleCallee& callee = random.pick(callees);
    const qint64 flags = random.pick(kUsualFlags);
    const bool isMissed = flags == kBlocked || random.below(4) == 0;
    const bool isFaceTime = flags == kFaceTimeIncoming || flags == kFaceTimeOutgoing;
    return {.address = isFaceTime && !callee.email.isNull() ? callee.email : dialled(callee.number),
            .date = date,
            .durationSeconds = isMissed ? 0 : 5 + random.below(random.below(10) == 0 ? 7'200 : 400),
            .flags = flags,
            .personId = callee.personId};
}

class CallTable {
public:
    explicit CallTable(DRDatabase& database)
        : m_insert(database.prepare(
              u"INSERT INTO call (address, date, duration, flags, id, country_code, network_code, read, assisted, "
              "originalAddress, answered) VALUES (?, ?, ?, ?, ?, '310', '410', 1, 0, '', ?)"_s))
    {
    }

    [[nodiscard]] bool insert(const Call& call)
    {
        return m_insert.update({call.address, call.date.toSecsSinceEpoch(), call.durationSeconds, call.flags,
                                call.personId, qint64{call.durationSeconds > 0}});
    }

private:
    DRStatement m_insert;
};

bool insertHardCalls(CallTable& table, const DRSampleSettings& settings)
{
    return std::all_of(kHardCalls.begin(), kHardCalls.end(), [&](const HardCall& call) {
        return table.insert({.address = call.address.toString(),
                             .date = settings.moment.addSecs(-call.hoursAgo * 3'600),
                             .durationSeconds = call.durationSeconds,
                             .flags = call.flags});
    });
}

} // namespace

bool addIPhoneCalls(DRSampleIPhoneBackup& backup,
                    const DRSampleSettings& settings,
                    const std::vector<DRSampleCallee>& callees)
{
    const qint64 count = qint64{kCallsPerScale} * settings.scale - static_cast<qint64>(kHardCalls.size());
    const auto rows = [&](DRDatabase& database) {
        DRSampleRandom random(kSeed);
        CallTable table(database);
        if (!insertHardCalls(table, settings)) {
            return false;
        }
        const qint64 span = (kDaysOfCalls - 2) * kSecondsPerDay;
        for (qint64 left = count; left > 0; --left) {
            const QDateTime date = settings.moment.addSecs(-kSecondsPerDay - span * left / count);
            if (!table.insert(composeCall(callees, date, random))) {
                return false;
            }
        }
        return true;
    };
    return backup.addDatabase({.domain = u"WirelessDomain"_s, .path = u"Library/CallHistory/call_history.db"_s},
                              {u"iphone_call_history"_s}, rows);
}
