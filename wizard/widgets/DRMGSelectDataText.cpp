#include "wizard/widgets/DRMGSelectDataText.h"

#include "platform/core/DRSizeText.h"

using namespace Qt::StringLiterals;

QString selectDataText(const DRMGSelectDataLabel& label)
{
    const QString count =
        label.dataCounter ? QString::number(static_cast<qint32>(*label.dataCounter)) : label.unknownCount;
    QString text = label.stringValue;
    text.replace(u"%i"_s, count);
    return label.sizeBytes ? u"%1 (%2)"_s.arg(text, sizeText(*label.sizeBytes, QLocale())) : text;
}
