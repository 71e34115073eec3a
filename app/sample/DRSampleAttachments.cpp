#include "app/sample/DRSampleAttachments.h"

#include "app/sample/DRSampleIPhoneBackup.h"
#include "app/sample/DRSampleMedia.h"
#include "app/sample/DRSampleMovie.h"
#include "app/sample/DRSamplePicture.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr quint64 kFirstSeed = 500; // other pictures than those of the address book
constexpr qint64 kFilmed = 1'388'534'400;
constexpr qint64 kSecondsPerDay = 86'400;

QByteArray movie(quint64 variant, DRSampleMovie::Order order)
{
    return encodeSampleMovie(
        {.seed = kFirstSeed + variant,
         .created = QDateTime::fromSecsSinceEpoch(kFilmed + static_cast<qint64>(variant) * kSecondsPerDay, Qt::UTC),
         .title = u"Sommar på sjön %1"_s.arg(variant),
         .location = u"+59.3293+018.0686/"_s,
         .order = order});
}

using Kind = DRSampleAttachments::Kind;
constexpr std::array kKinds{
    Kind{u"jpeg", u"image/jpeg", u"public.jpeg", u"JPG", 9,
         [](quint64 variant) { return sampleJpeg(kFirstSeed + variant, 320, 240); }},
    Kind{u"png", u"image/png", u"public.png", u"png", 4,
         [](quint64 variant) { return samplePng(kFirstSeed + variant, 96, 144); }},
    Kind{u"gif", u"image/gif", u"com.compuserve.gif", u"gif", 6, DRSampleMedia::gif},
    Kind{u"movie", u"video/quicktime", u"com.apple.quicktime-movie", u"MOV", 3,
         [](quint64 variant) { return movie(variant, DRSampleMovie::Order::DescriptionFirst); }},
    Kind{u"lateMovie", u"video/quicktime", u"com.apple.quicktime-movie", u"MOV", 2,
         [](quint64 variant) { return movie(10 + variant, DRSampleMovie::Order::PicturesFirst); }},
    Kind{u"wave", u"audio/x-wav", u"com.microsoft.waveform-audio", u"wav", 5, DRSampleMedia::wave},
    Kind{u"amr", u"audio/amr", u"org.3gpp.adaptive-multi-rate-audio", u"amr", 5, DRSampleMedia::amr},
    Kind{u"pdf", u"application/pdf", u"com.adobe.pdf", u"pdf", 5,
         [](quint64 variant) { return DRSampleMedia::pdf("Table for " + QByteArray::number(variant + 2)); }},
    Kind{u"vcard", u"text/vcard", u"public.vcard", u"vcf", 5,
         [](quint64 variant) { return DRSampleMedia::vCard(u"Björn %1"_s.arg(variant + 1)); }},
    Kind{u"letter", u"text/plain", u"public.plain-text", u"txt", 5,
         [](quint64 variant) {
             return QByteArray("Dear Zo\xC3\xAB,\r\nthis is letter ") + QByteArray::number(variant);
         }},
    Kind{u"empty", u"text/plain", u"public.plain-text", u"txt", 1, [](quint64) { return QByteArray(); }},
    Kind{u"unknown",
         {},
         u"dyn.age80k",
         u"bin",
         5,
         [](quint64 variant) { return QByteArray::fromHex("1f8b00ff0d0a1a") + QByteArray::number(variant); }},
};

QString withoutRoot(QString path)
{
    return path.remove(u"~/"_s).remove(u"/var/mobile/"_s);
}

} // namespace

const Kind& DRSampleAttachments::kind(QStringView name)
{
    const auto* found =
        std::find_if(kKinds.begin(), kKinds.end(), [name](const Kind& kind) { return kind.name == name; });
    Q_ASSERT(found != kKinds.end());
    return *found;
}

DRSampleAttachments::DRSampleAttachments(DRSampleIPhoneBackup& backup) : m_backup(backup) {}

std::optional<qint64> DRSampleAttachments::add(const QString& path, QStringView kindName)
{
    const Kind& kind = DRSampleAttachments::kind(kindName);
    Files& files = m_files[kind.name.toString()];
    const std::size_t variant = files.used++ % kind.variants;
    if (variant == files.variants.size()) {
        files.variants.push_back(kind.make(variant));
    }
    const QByteArray& bytes = files.variants[variant];
    if (!m_backup.addData({.domain = u"MediaDomain"_s, .path = withoutRoot(path)}, bytes)) {
        return std::nullopt;
    }
    return bytes.size();
}
