#include "board/framework/startOrder.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace framework {

namespace {

/// A depth-first walk along the dependencies.
class Walk {
public:
    explicit Walk(const std::vector<EntityNeeds>& nodes)
        : entities(nodes), marks(nodes.size(), Mark::fresh) {
        for (std::size_t index = 0; index < nodes.size(); ++index) {
            indexes.emplace(nodes[index].name, index);
        }
    }

    StartOrder run() {
        for (std::size_t index = 0; index < entities.size(); ++index) {
            visit(index);
        }
        return std::move(result);
    }

private:
    enum class Mark { fresh, onPath, done };

    void visit(std::size_t index) {
        if (marks[index] == Mark::done) {
            return;
        }
        if (marks[index] == Mark::onPath) {
            reportCircle(index);
            return;
        }
        marks[index] = Mark::onPath;
        path.push_back(index);
        for (const std::string& name : entities[index].dependencies) {
            if (const auto found = indexes.find(name); found != indexes.end()) {
                visit(found->second);
            } else {
                result.problems.push_back("entity \"" + entities[index].name + "\" needs \"" +
                                          name + "\", which is not registered");
                result.impossible.insert(index);
            }
        }
        path.pop_back();
        marks[index] = Mark::done;
        result.order.push_back(index);
    }

    /// The path, from the entity's first place to its end, is the circle.
    void reportCircle(std::size_t entity) {
        std::string names;
        for (auto step = std::ranges::find(path, entity); step != path.end(); ++step) {
            names += entities[*step].name + " -> ";
            result.impossible.insert(*step);
        }
        result.problems.push_back("entities depend on each other in a circle: " + names +
                                  entities[entity].name);
    }

    const std::vector<EntityNeeds>& entities;
    std::unordered_map<std::string, std::size_t> indexes;
    std::vector<Mark> marks;
    std::vector<std::size_t> path;
    StartOrder result;
};

}  // namespace

StartOrder findStartOrder(const std::vector<EntityNeeds>& entities) { return Walk(entities).run(); }

}  // namespace framework
