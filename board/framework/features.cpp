#include "platform/features.h"

#include "board/framework/Framework.h"

#include <string>

bool isActive(int feature) {
    return board::framework().settings.hasFeature(std::to_string(feature));
}

int checkProfileMode() { return board::framework().settings.values().profileMode ? 1 : 0; }
