#include "platform/ui/DRIconLabel.h"

#include "platform/core/DRLog.h"
#include "platform/sequence/DRSequenceResourceManager.h"
#include "platform/ui/DRAccessibleRole.h"

#include <QPainter>

using namespace Qt::StringLiterals;

DRIconLabel::DRIconLabel(const DRSequenceResourceManager& resources, QWidget* parent)
    : QWidget(parent), m_resources(resources)
{
    DRAccessibleRole::give(*this, QAccessible::Graphic);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

bool DRIconLabel::setIconName(const QString& name)
{
    const QString path = m_resources.pathForResource(name);
    // Loading nothing empties the label.
    const bool isLoaded = path.isEmpty() ? m_picture.load(QByteArray()) : m_picture.load(path);
    if (!isLoaded) {
        qCWarning(lcMigrate).noquote() << "there is no picture named" << name;
    }
    m_picture.setAspectRatioMode(Qt::KeepAspectRatio);
    updateGeometry();
    update();
    return isLoaded;
}

void DRIconLabel::setIconSize(const QSize& size)
{
    m_iconSize = size;
    updateGeometry();
}

QSize DRIconLabel::sizeHint() const
{
    return m_iconSize.isEmpty() ? m_picture.defaultSize() : m_iconSize;
}

void DRIconLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    m_picture.render(&painter, rect());
}
