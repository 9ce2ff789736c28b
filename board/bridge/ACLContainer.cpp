#include "board/bridge/AccessLists.h"
#include "board/bridge/Failure.h"
#include "board/framework/Framework.h"
#include "platform/acl.h"

#include <exception>
#include <memory>
#include <string>

/// A container is not more than the owner of its lists, and costs nothing as long as it has none.
struct ACLContainer_t::Lists {};

namespace {

using bridge::AccessLists;

/// An exception becomes a code and one line in the log. Nothing else may reach the caller.
template <class Operation>
int guarded(const char* function, const std::string& name, Operation operation) {
    const auto refuse = [&](bridge::Code code, const char* reason) {
        framework::logLine(LogImpl::levelError,
                           std::string(function) + " of access list \"" + name + "\": " + reason);
        return code;
    };
    try {
        operation(AccessLists::instance());
        return bridge::success;
    } catch (const bridge::Failure& failure) {
        return refuse(failure.code, failure.what());
    } catch (const std::exception& error) {
        return refuse(bridge::internalError, error.what());
    }
}

}  // namespace

ACLContainer_t::ACLContainer_t(const std::string&, const std::string&)
    : lists(std::make_unique<Lists>()) {}

ACLContainer_t::~ACLContainer_t() {
    guarded("the end", "*", [this](AccessLists& all) { all.removeAllOf(this); });
}

int ACLContainer_t::createACL(const std::string& name, aclType_t type) {
    return guarded(__func__, name, [&](AccessLists& all) { all.create(this, name, type); });
}

int ACLContainer_t::deleteACL(const std::string& name) {
    return guarded(__func__, name, [&](AccessLists& all) { all.remove(this, name); });
}

int ACLContainer_t::createRule(const std::string& name, bool permit, unsigned int& ruleId,
                               unsigned int sequenceNumber) {
    return guarded(__func__, name, [&](AccessLists& all) {
        ruleId = all.createRule(this, name, permit, sequenceNumber);
    });
}

int ACLContainer_t::delRuleById(const std::string& name, unsigned int ruleId) {
    return guarded(__func__, name, [&](AccessLists& all) { all.removeRule(this, name, ruleId); });
}

int ACLContainer_t::addCondition(const std::string& name, unsigned int ruleId,
                                 const zubridge_acl_condition& condition) {
    return guarded(__func__, name,
                   [&](AccessLists& all) { all.addCondition(this, name, ruleId, condition); });
}

int ACLContainer_t::delCondition(const std::string& name, unsigned int ruleId,
                                 unsigned int number) {
    return guarded(__func__, name,
                   [&](AccessLists& all) { all.removeCondition(this, name, ruleId, number); });
}

int ACLContainer_t::changeRuleSequenceNumber(const std::string& name, unsigned int ruleId,
                                             unsigned int sequenceNumber) {
    return guarded(__func__, name,
                   [&](AccessLists& all) { all.moveRule(this, name, ruleId, sequenceNumber); });
}

int ACLContainer_t::assignACL(const std::string& name, int portId, bool outgoing, unsigned int) {
    return guarded(__func__, name,
                   [&](AccessLists& all) { all.assign(this, name, portId, outgoing); });
}

int ACLContainer_t::deassignACL(const std::string& name, int portId, bool outgoing) {
    return guarded(__func__, name,
                   [&](AccessLists& all) { all.withdraw(this, name, portId, outgoing); });
}

int ACLContainer_t::getACLRule(const std::string& name, unsigned int ruleId,
                               aclRule_t& rule) const {
    return guarded(__func__, name, [&](AccessLists& all) { rule = all.rule(this, name, ruleId); });
}
