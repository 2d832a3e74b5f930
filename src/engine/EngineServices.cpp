#include "engine/EngineServices.h"

#include "engine/EngineEvents.h"
#include "platform/NotificationCenter.h"
#include "platform/SystemLog.h"

namespace sweeply {

void EngineServices::reportProblem(const Error& error) const {
    log.log(error.message());
    notifications.post(ProblemFound{error});
}

} // namespace sweeply
