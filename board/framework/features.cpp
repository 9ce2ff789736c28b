#include "platform/features.h"

#include "board/framework/Framework.h"

#include <string>

bool isActive(int feature) {
    return framework::framework().settings.hasFeature(std::to_string(feature));
}

int checkProfileMode() { return framework::framework().settings.values().profileMode ? 1 : 0; }
