#include "ui/DialogAlerts.h"

#include "ui/Text.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QThread>
#include <vector>

namespace sweeply {

AlertAnswer DialogAlerts::runAlert(const Alert& alert) {
    // The window is closing, and a worker makes its calls itself: nobody is there to be asked.
    if (QThread::currentThread() != QCoreApplication::instance()->thread())
        return {alert.safeButton, false, true};
    QMessageBox box(m_parent);
    box.setWindowModality(Qt::WindowModal);
    box.setIcon(alert.buttons.size() > 1               ? QMessageBox::Question
                : alert.style == Alert::Style::Warning ? QMessageBox::Warning
                                                       : QMessageBox::Information);
    box.setWindowTitle(QStringLiteral("Sweeply"));
    box.setTextFormat(Qt::PlainText); // texts hold names that strangers chose
    box.setText(QString::fromStdString(alert.title));
    box.setInformativeText(QString::fromStdString(alert.text));
    std::vector<QPushButton*> buttons;
    for (std::size_t index = 0; index < alert.buttons.size(); ++index)
        buttons.push_back(box.addButton(QString::fromStdString(alert.buttons[index]),
                                        index == alert.safeButton ? QMessageBox::RejectRole : QMessageBox::AcceptRole));
    box.setDefaultButton(buttons.front());
    box.setEscapeButton(buttons[alert.safeButton]);
    if (alert.checkBox) {
        box.setCheckBox(new QCheckBox(QString::fromStdString(alert.checkBox->text)));
        box.checkBox()->setChecked(alert.checkBox->isChecked);
    }
    box.exec();
    AlertAnswer answer;
    answer.button = alert.safeButton;
    for (std::size_t index = 0; index < buttons.size(); ++index) {
        if (box.clickedButton() == buttons[index])
            answer.button = index;
    }
    answer.isBoxChecked = box.checkBox() && box.checkBox()->isChecked();
    return answer;
}

} // namespace sweeply
