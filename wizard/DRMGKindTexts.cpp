#include "wizard/DRMGKindTexts.h"

#include "platform/core/DRLocalizedStrings.h"
#include "platform/core/DRLog.h"

using namespace Qt::StringLiterals;

QString DRMGKindTexts::name(const DRLocalizedStrings& strings, const QString& key)
{
    const QString name = strings.text(u"wizard_kind_"_s + key);
    return name.isEmpty() ? withoutControlCharacters(key) : name;
}

QString DRMGKindTexts::names(const DRLocalizedStrings& strings, const QStringList& keys)
{
    QStringList names;
    for (const QString& key : keys) {
        names.append(name(strings, key));
    }
    return names.join(u", "_s);
}

QString DRMGKindTexts::state(const DRLocalizedStrings& strings, DRKindContent::State state)
{
    switch (state) {
    case DRKindContent::State::Loaded:
        break;
    case DRKindContent::State::Loading:
        return strings.text(u"wizard_content_loading"_s);
    case DRKindContent::State::NotSupported:
        return strings.text(u"wizard_content_not_supported"_s);
    case DRKindContent::State::NotInBackup:
        return strings.text(u"wizard_content_not_in_backup"_s);
    case DRKindContent::State::NotAvailable:
        return strings.text(u"wizard_content_not_available"_s);
    case DRKindContent::State::Unreadable:
        return strings.text(u"wizard_content_unreadable"_s);
    }
    return {};
}

QString DRMGKindTexts::unmoved(const DRLocalizedStrings& strings, const DRTransferPlan::Unmoved& kind)
{
    using Reason = DRTransferPlan::Unmoved::Reason;
    switch (kind.reason) {
    case Reason::NotSupported:
        return state(strings, DRKindContent::State::NotSupported);
    case Reason::NotInBackup:
        return state(strings, DRKindContent::State::NotInBackup);
    case Reason::NotAvailable:
        return state(strings, DRKindContent::State::NotAvailable);
    case Reason::Unreadable: {
        const QString text = state(strings, DRKindContent::State::Unreadable);
        return kind.detail.isEmpty() ? text : text + u": "_s + withoutControlCharacters(kind.detail);
    }
    case Reason::NoApp:
        return strings.text(u"wizard_unmoved_no_app"_s);
    case Reason::AppNotSupported:
        return strings.text(u"wizard_unmoved_app_not_supported"_s);
    }
    return {};
}
