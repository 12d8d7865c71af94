// What the server tells its operator: one line for each session's begin and end, for each change and each
// refusal.
#ifndef YFW_FRONTENDS_NETCONF_TRANSPORT_SERVER_LOG_H
#define YFW_FRONTENDS_NETCONF_TRANSPORT_SERVER_LOG_H

#include <string>
#include <string_view>

#include "device/events/hub.h"
#include "frontends/netconf/operations/conversation.h"

namespace yfw::netconf {

// Prints "yfw: TEXT" on standard error as one line; a long text is cut. Any thread may call it.
void log_line(std::string_view text);

// What an operation did or why it was refused. Successful reads are not logged.
void log_reply(const Caller &caller, const Reply &reply);

// Logs which nodes of the running configuration change, and by whom, as long as it exists. Borrows the hub.
class ChangeLog final : public events::Observer {
public:
    explicit ChangeLog(events::Hub &hub) : hub_(hub) { hub_.add(*this); }
    ~ChangeLog() override { hub_.remove(*this); }
    ChangeLog(const ChangeLog &) = delete;
    ChangeLog &operator=(const ChangeLog &) = delete;

    void changed(const events::ConfigurationChange &change) override;
    void changed(const events::ConfirmedCommit &commit) override;

private:
    events::Hub &hub_;
};

} // namespace yfw::netconf

#endif
