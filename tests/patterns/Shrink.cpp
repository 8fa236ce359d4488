#include "Shrink.h"

#include <utility>

namespace patterns {
namespace {

/// Works on one round in place: every attempt changes it, and is taken back unless it still fails.
class Shrinker {
public:
    Shrinker(const Round& round, const std::function<bool(const Round&)>& fails)
        : round(round), fails(fails)
    {}

    Round least()
    {
        do {
            smaller = false;
            shrinkSteps(round.steps);
            for (Graph& graph : round.graphs) {
                shrinkGraph(graph);
            }
            for (QString& url : round.urls) {
                shorten(url);
            }
        } while (smaller);
        return round;
    }

private:
    /// Leaves out stretches of a list or a text, long ones first.
    template <class List>
    void shorten(List& list)
    {
        for (int length = int(list.size()); length > 0; length /= 2) {
            for (int start = 0; start + length <= int(list.size());) {
                const List before = list;
                List without = list.mid(0, start) + list.mid(start + length);
                list = without;
                if (!accepted()) {
                    list = before;
                    start += length;
                }
            }
        }
    }

    template <class Item>
    void shorten(std::vector<Item>& list)
    {
        for (int length = int(list.size()); length > 0; length /= 2) {
            for (int start = 0; start + length <= int(list.size());) {
                const std::vector<Item> before = list;
                list.erase(list.begin() + start, list.begin() + start + length);
                if (!accepted()) {
                    list = before;
                    start += length;
                }
            }
        }
    }

    bool accepted()
    {
        const bool still = fails(round);
        smaller = smaller || still;
        return still;
    }

    void shrinkSteps(std::vector<Step>& steps)
    {
        shorten(steps);
        for (std::size_t i = 0; i < steps.size(); ++i) {
            takeOut(steps, i);
            shrinkSteps(steps[i].inside);
        }
    }

    /// What a step does inside another may do as well behind it.
    void takeOut(std::vector<Step>& steps, std::size_t place)
    {
        if (steps[place].inside.empty()) {
            return;
        }
        const std::vector<Step> before = steps;
        const std::vector<Step> inside = std::exchange(steps[place].inside, {});
        steps.insert(steps.begin() + int(place) + 1, inside.begin(), inside.end());
        if (!accepted()) {
            steps = before;
        }
    }

    void shrinkGraph(Graph& graph)
    {
        shorten(graph);
        for (Node& node : graph) {
            shorten(node.edges);
            for (Edge& edge : node.edges) {
                for (QStringList* list : {&edge.patterns, &edge.compared, &edge.urls}) {
                    shorten(*list);
                    for (QString& text : *list) {
                        shorten(text);
                    }
                }
            }
        }
    }

    Round round;
    const std::function<bool(const Round&)>& fails;
    bool smaller = false;
};

} // namespace

Round shrink(const Round& round, const std::function<bool(const Round&)>& fails)
{
    return Shrinker(round, fails).least();
}

} // namespace patterns
