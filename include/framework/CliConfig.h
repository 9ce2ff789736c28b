#pragma once

#include "framework/singleton.h"

#pragma GCC visibility push(default)

/// The configuration of the command line.
class CliConfig : public singleton<CliConfig> {
public:
    /// Settings of the command line; a default-constructed record holds the factory values.
    struct settings_t {
        settings_t();

        /// Limit on concurrent terminal sessions.
        unsigned int maxSessions;
    };

    /// True while a clear-configuration is being carried out.
    bool isClearConfigInProgress() const;

private:
    friend class singleton<CliConfig>;
    CliConfig();
    ~CliConfig();
};

extern template class singleton<CliConfig>;

#pragma GCC visibility pop
