#include "board/bridge/AccessLists.h"
#include "board/bridge/aclChecks.h"
#include "board/bridge/bridgeCodes.h"
#include "board/framework/Framework.h"
#include "board/support/answer.h"
#include "platform/acl.h"

#include <fmt/format.h>

#include <functional>
#include <memory>
#include <string>

/// A container is not more than the owner of its lists, and costs nothing as long as it has none.
struct ACLContainer_t::Lists {};

namespace {

using bridge::AccessList;
using bridge::AccessLists;

template <class Operation>
int answer(const char* function, const std::string& name, Operation operation) {
    return support::answer(fmt::format("{} of access list \"{}\"", function, name),
                           bridge::internalError, framework::writeLog,
                           [&] { operation(AccessLists::instance()); });
}

int changeList(const char* function, const ACLContainer_t* owner, const std::string& name,
               const std::function<void(AccessList&)>& edit) {
    return answer(function, name, [&](AccessLists& all) { all.changeList(owner, name, edit); });
}

}  // namespace

ACLContainer_t::ACLContainer_t(const std::string&, const std::string&)
    : lists(std::make_unique<Lists>()) {}

ACLContainer_t::~ACLContainer_t() {
    answer("the end", "*", [this](AccessLists& all) { all.removeAllOf(this); });
}

int ACLContainer_t::createACL(const std::string& name, aclType_t type) {
    return answer(__func__, name, [&](AccessLists& all) { all.create(this, name, type); });
}

int ACLContainer_t::deleteACL(const std::string& name) {
    return answer(__func__, name, [&](AccessLists& all) { all.remove(this, name); });
}

int ACLContainer_t::createRule(const std::string& name, bool permit, unsigned int& ruleId,
                               unsigned int sequenceNumber) {
    return answer(__func__, name, [&](AccessLists& all) {
        ruleId = all.createRule(this, name, permit, sequenceNumber);
    });
}

int ACLContainer_t::delRuleById(const std::string& name, unsigned int ruleId) {
    return changeList(__func__, this, name, [&](AccessList& list) { list.erase(ruleId); });
}

int ACLContainer_t::addCondition(const std::string& name, unsigned int ruleId,
                                 const zubridge_acl_condition& condition) {
    return changeList(__func__, this, name,
                      [&](AccessList& list) { list.addCondition(ruleId, condition); });
}

int ACLContainer_t::delCondition(const std::string& name, unsigned int ruleId,
                                 unsigned int number) {
    return changeList(__func__, this, name,
                      [&](AccessList& list) { list.removeCondition(ruleId, number); });
}

int ACLContainer_t::changeRuleSequenceNumber(const std::string& name, unsigned int ruleId,
                                             unsigned int sequenceNumber) {
    return changeList(__func__, this, name,
                      [&](AccessList& list) { list.move(ruleId, sequenceNumber); });
}

int ACLContainer_t::assignACL(const std::string& name, int portId, bool outgoing, unsigned int) {
    return answer(__func__, name,
                  [&](AccessLists& all) { all.assign(this, name, portId, outgoing); });
}

int ACLContainer_t::deassignACL(const std::string& name, int portId, bool outgoing) {
    return changeList(__func__, this, name, [&](AccessList& list) {
        bridge::checkDirection(outgoing);
        list.withdraw(portId);
    });
}

int ACLContainer_t::getACLRule(const std::string& name, unsigned int ruleId,
                               aclRule_t& rule) const {
    return answer(__func__, name, [&](AccessLists& all) { rule = all.rule(this, name, ruleId); });
}
