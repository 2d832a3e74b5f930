#include "ui/TourSteps.h"

#include "platform/Localization.h"
#include "ui/Text.h"

namespace sweeply {

QString TourSteps::text() const {
    switch (m_step) {
    case Step::Scan:
        return localized("1 of 4, scan: press Scan in the tool bar (Ctrl+R). It looks for what serves nobody and "
                         "changes nothing.");
    case Step::Look:
        return localized("2 of 4, look: select a module on the left, then an item in its list. The information panel "
                         "says why it is listed and what removing it means.");
    case Step::Uncheck:
        return localized("3 of 4, uncheck: take the mark off something that shall stay. Later scans remember that.");
    case Step::Remove:
        return localized("4 of 4, remove: press Remove in the tool bar (Ctrl+D). What is checked goes; here that is "
                         "only a part of the sample.");
    case Step::Done:
        break;
    }
    return localized("That is all. The line at the foot of the window says how much was freed. \"Choose Another Mac…\" "
                     "in the File menu leads to yours.");
}

bool TourSteps::isDone(const Seen& seen) const {
    if (seen.isRunning)
        return false;
    switch (m_step) {
    case Step::Scan:
        return seen.found > 0;
    case Step::Look:
        return seen.isShowingModule;
    case Step::Uncheck:
        return seen.checked != m_checkedBefore;
    case Step::Remove:
        return seen.freed > 0;
    case Step::Done:
        break;
    }
    return false;
}

bool TourSteps::see(const Seen& seen) {
    if (m_isNew)
        m_checkedBefore = seen.checked;
    m_isNew = false;
    if (!isDone(seen))
        return false;
    skip();
    return true;
}

void TourSteps::skip() {
    if (m_step == Step::Done)
        return;
    m_step = static_cast<Step>(static_cast<int>(m_step) + 1);
    m_isNew = true;
}

} // namespace sweeply
