#include "ui/Scrolled.h"

#include <QFrame>
#include <QScrollArea>

namespace sweeply {

QScrollArea* scrolled(QWidget* content, const QString& name) {
    auto* area = new QScrollArea;
    area->setAccessibleName(name);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setWidget(content);
    return area;
}

} // namespace sweeply
