#pragma once

/// Names a bridge or VLAN database of the shelf; 8 zero bytes name the default one.
struct zuHandle_t {
    unsigned char bytes[8];
};
