#include "network/operations.h"

#include <algorithm>
#include <iterator>
#include <ostream>

OperationBuffers buffers{};

void PrintTo(const Operation& operation, std::ostream* out) { *out << operation.name(); }

std::vector<Operation> onBoard(const std::function<void(fake::Platform&)>& state,
                               std::vector<Operation> rows) {
    for (Operation& row : rows) {
        if (!row.prepare) {
            row.prepare = state;
        }
    }
    return rows;
}

std::vector<Operation> joined(std::initializer_list<std::vector<Operation>> parts) {
    std::vector<Operation> all;
    for (const std::vector<Operation>& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

const std::vector<Operation>& operations() {
    static const std::vector<Operation> all = joined(
        {addressingOperations(), resolverOperations(), managementOperations(), boardOperations()});
    return all;
}

std::vector<Operation> exportedOperations() {
    std::vector<Operation> rows;
    std::ranges::copy_if(operations(), std::back_inserter(rows), [&](const Operation& operation) {
        return operation.call.isExported() &&
               std::ranges::find(rows, operation.call.name,
                                 [](const Operation& row) { return row.call.name; }) == rows.end();
    });
    return rows;
}
