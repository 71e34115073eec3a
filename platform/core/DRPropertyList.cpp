#include "platform/core/DRPropertyList.h"

#include "platform/core/DRDates.h"
#include "platform/core/DRFiles.h"
#include "platform/core/DRPropertyListGuard.h"
#include "platform/core/DRUtf8.h"

#include <plist/plist.h>
#include <QDateTime>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kMaximumBytes = qint64{64} * 1024 * 1024;

struct FreeNode {
    void operator()(plist_t node) const { plist_free(node); }
};
struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
};
using Node = std::unique_ptr<void, FreeNode>;
template <typename T> using Memory = std::unique_ptr<T, FreeMemory>;

// ---- reading ----

QVariant valueOf(plist_t node);

Node parse(const QByteArray& bytes)
{
    plist_t node = nullptr;
    const auto size = static_cast<uint32_t>(bytes.size());
    if (bytes.startsWith("bplist")) {
        if (DRPropertyListGuard::isHarmlessBinary(bytes)) {
            plist_from_bin(bytes.constData(), size, &node);
        }
        return Node(node);
    }
    if (DRPropertyListGuard::isHarmlessXml(bytes)) {
        plist_from_xml(bytes.constData(), size, &node);
    }
    return Node(node);
}

QByteArray xmlOf(plist_t node)
{
    char* xml = nullptr;
    uint32_t size = 0;
    plist_to_xml(node, &xml, &size);
    const Memory<char> owner(xml);
    return {xml, static_cast<qsizetype>(size)};
}

/// The library hands out negative integers and those above 2^63 as the same bits; only their XML tells them apart.
QVariant integerOf(plist_t node)
{
    uint64_t bits = 0;
    plist_get_uint_val(node, &bits);
    const bool isAmbiguous = bits > static_cast<uint64_t>(std::numeric_limits<qint64>::max());
    if (isAmbiguous && !xmlOf(node).contains("<integer>-")) {
        return QVariant::fromValue<quint64>(bits);
    }
    return QVariant::fromValue(static_cast<qint64>(bits));
}

QVariant dateOf(plist_t node)
{
    int32_t seconds = 0;
    int32_t microseconds = 0; // of the same direction as the seconds
    plist_get_date_val(node, &seconds, &microseconds);
    const double fraction = microseconds / 1e6;
    return DRDates::fromReferenceSeconds(seconds < 0 ? seconds - fraction : seconds + fraction);
}

QVariant dataOf(plist_t node)
{
    uint64_t size = 0;
    const char* bytes = plist_get_data_ptr(node, &size);
    return size == 0 ? QByteArray("") : QByteArray(bytes, static_cast<qsizetype>(size));
}

QVariant textOf(plist_t node)
{
    uint64_t size = 0;
    const char* bytes = plist_get_string_ptr(node, &size);
    return DRUtf8::decode(QByteArrayView(bytes, static_cast<qsizetype>(size)));
}

QVariant arrayOf(plist_t node)
{
    plist_array_iter position = nullptr;
    plist_array_new_iter(node, &position);
    const Memory<void> owner(position);
    QVariantList values;
    for (plist_t item = nullptr; plist_array_next_item(node, position, &item), item != nullptr;) {
        if (QVariant value = valueOf(item); value.isValid()) {
            values.append(std::move(value));
        }
    }
    return values;
}

QVariantMap dictionaryOf(plist_t node)
{
    plist_dict_iter position = nullptr;
    plist_dict_new_iter(node, &position);
    const Memory<void> owner(position);
    QVariantMap values;
    while (true) {
        char* key = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, position, &key, &item);
        const Memory<char> keyOwner(key);
        if (item == nullptr) {
            return values;
        }
        if (const QVariant value = valueOf(item); value.isValid() && key != nullptr) {
            values.insert(DRUtf8::decode(QByteArrayView(key)), value);
        }
    }
}

/// Recurses no deeper than the guard let through. Invalid for what has no place in our values.
QVariant valueOf(plist_t node)
{
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        uint8_t value = 0;
        plist_get_bool_val(node, &value);
        return value != 0;
    }
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(node, &value);
        return value;
    }
    case PLIST_UINT:
        return integerOf(node);
    case PLIST_STRING:
        return textOf(node);
    case PLIST_ARRAY:
        return arrayOf(node);
    case PLIST_DICT:
        return dictionaryOf(node);
    case PLIST_DATE:
        return dateOf(node);
    case PLIST_DATA:
        return dataOf(node);
    default:
        return {};
    }
}

// ---- writing ----

Node nodeOf(const QVariant& value);

/// Characters that XML 1.0 has no way to write become U+FFFD.
QByteArray writableText(QString text)
{
    const auto isUnwritable = [](QChar character) {
        const char16_t unit = character.unicode();
        return (unit < u' ' && unit != u'\t' && unit != u'\n' && unit != u'\r') || unit >= u'\uFFFE';
    };
    std::ranges::replace_if(text, isUnwritable, QChar(u'\uFFFD'));
    return DRUtf8::encode(text);
}

/// The library's constructor takes such a value for a negative one.
Node nodeOfUnsigned(quint64 value)
{
    if (value <= static_cast<quint64>(std::numeric_limits<qint64>::max())) {
        return Node(plist_new_uint(value));
    }
    return parse("<plist><integer>" + QByteArray::number(value) + "</integer></plist>");
}

Node nodeOfDate(const QDateTime& date)
{
    using Limits = std::numeric_limits<int32_t>;
    const double seconds = std::clamp(DRDates::toReferenceSeconds(date), double{Limits::min()}, double{Limits::max()});
    const auto wholeSeconds = static_cast<int32_t>(seconds);
    return Node(plist_new_date(wholeSeconds, static_cast<int32_t>((seconds - wholeSeconds) * 1e6)));
}

Node nodeOfList(const QVariantList& values)
{
    Node array(plist_new_array());
    for (const QVariant& value : values) {
        if (Node item = nodeOf(value)) {
            plist_array_append_item(array.get(), item.release());
        }
    }
    return array;
}

Node nodeOfDictionary(const QVariantMap& dictionary)
{
    Node node(plist_new_dict());
    for (auto entry = dictionary.begin(); entry != dictionary.end(); ++entry) {
        if (Node item = nodeOf(entry.value())) {
            plist_dict_set_item(node.get(), writableText(entry.key()).constData(), item.release());
        }
    }
    return node;
}

/// Null for a value of another type.
Node nodeOf(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::QString:
        return Node(plist_new_string(writableText(value.toString()).constData()));
    case QMetaType::Bool:
        return Node(plist_new_bool(value.toBool() ? 1 : 0));
    case QMetaType::Int:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return Node(plist_new_uint(static_cast<uint64_t>(value.toLongLong())));
    case QMetaType::UInt:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return nodeOfUnsigned(value.toULongLong());
    case QMetaType::Float:
    case QMetaType::Double:
        return Node(plist_new_real(value.toDouble()));
    case QMetaType::QByteArray:
        return Node(plist_new_data(value.toByteArray().constData(), static_cast<uint64_t>(value.toByteArray().size())));
    case QMetaType::QDateTime:
        return nodeOfDate(value.toDateTime());
    case QMetaType::QStringList:
    case QMetaType::QVariantList:
        return nodeOfList(value.toList());
    case QMetaType::QVariantMap:
        return nodeOfDictionary(value.toMap());
    default:
        return nullptr;
    }
}

} // namespace

std::optional<QVariantMap> DRPropertyList::readDictionary(const QString& path)
{
    const auto bytes = DRFiles::readRegularFile(path, kMaximumBytes);
    return bytes ? dictionaryFromData(*bytes) : std::nullopt;
}

std::optional<QVariantMap> DRPropertyList::dictionaryFromData(const QByteArray& bytes)
{
    if (bytes.size() > kMaximumBytes) {
        return std::nullopt;
    }
    const Node root = parse(bytes);
    if (!root || plist_get_node_type(root.get()) != PLIST_DICT) {
        return std::nullopt;
    }
    return dictionaryOf(root.get());
}

QByteArray DRPropertyList::xmlFromDictionary(const QVariantMap& dictionary)
{
    return xmlOf(nodeOfDictionary(dictionary).get());
}

QByteArray DRPropertyList::binaryFromDictionary(const QVariantMap& dictionary)
{
    char* bytes = nullptr;
    uint32_t size = 0;
    plist_to_bin(nodeOfDictionary(dictionary).get(), &bytes, &size);
    const Memory<char> owner(bytes);
    return {bytes, static_cast<qsizetype>(size)};
}
