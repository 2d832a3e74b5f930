#include "ui/RebuildRow.h"

#include "appcore/processes/LaunchDatabase.h"
#include "ui/Text.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>

namespace sweeply {

RebuildRow::RebuildRow(LaunchDatabase& database) {
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    auto* text = new QLabel(localized("The system's list of applications may still name what is gone:"));
    text->setWordWrap(true);
    line->addWidget(text, 1);
    auto* button = new QPushButton(localizedTitle("Rebuild"));
    line->addWidget(button);
    connect(button, &QPushButton::clicked, this, [&database, button] {
        button->setEnabled(false);
        button->setText(localizedTitle("Rebuilding..."));
        database.rebuildLaunchDB([guarded = QPointer<QPushButton>(button)] {
            if (!guarded)
                return;
            guarded->setText(localizedTitle("Rebuild"));
            guarded->setEnabled(true);
        });
    });
}

} // namespace sweeply
