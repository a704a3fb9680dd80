#include "module/editors/ActionFields.h"

#include "module/editors/NumberChecks.h"

int PriorityItem(std::int32_t priority) {
    if (priority == BACSTAC_NO_PRIORITY)
        return 0;
    return priority >= 1 && priority <= MOST_PRIORITY ? priority : -1;
}

std::int32_t PriorityOfItem(int item) {
    return item < 1 ? BACSTAC_NO_PRIORITY : item;
}

std::string ShowPostDelay(const BACSTAC_ACTION_COMMAND& command) {
    return (command.Mask & BACSTAC_POST_DELAY) != 0 ? std::to_string(command.PostDelay) : std::string();
}

bool StorePostDelay(const std::string& text, BACSTAC_ACTION_COMMAND& command) {
    const auto seconds = CheckUnsigned(text, 0, UINT32_MAX);
    if (seconds.message && !text.empty())
        return false;
    command.Mask = text.empty() ? command.Mask & ~BACSTAC_POST_DELAY : command.Mask | BACSTAC_POST_DELAY;
    command.PostDelay = text.empty() ? 0 : seconds.value;
    return true;
}
