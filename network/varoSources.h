#pragma once

/// Whose settings a record of varoLib holds, as its calls take it.

/// Lets varoLib choose, and report, whose values it returns.
constexpr int anySource = 0;
constexpr int dhcpSource = 1;
/// The configuration of the front ends: what the setters write and the plain getters read.
constexpr int cliSource = 2;
