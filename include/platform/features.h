#pragma once

/// Features and profiles of the product.

extern "C" {

/// Whether a feature or profile is active, by number. 5: the system software version is managed as
/// a whole; 12: the CORD profile.
bool isActive(int feature);

/// Non-zero while the shelf runs in VLAN-profile mode.
int checkProfileMode();
}
