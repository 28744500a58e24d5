/// @file
/// Programs over two states, beside a model that keeps pose and blocks in vectors.

#include "Input.h"
#include "support/Poses.h"

#include <tarvos/core/trackingdata/State.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

using tarvos::core::State;
using tarvos::math::Vector;
using Numbers = std::vector<double>;

/// A state's numbers: its two packed forms share the blocks and differ in the first part.
struct Model {
    Numbers data;
    std::vector<Numbers> parts;  ///< the incremental data and the blocks
    double time = 0.0;

    /// Where the numbers are that a vector of order @p order holds, in the form that begins with @p first.
    std::vector<double*> places(int order, Numbers& first) {
        std::vector<double*> all;
        for (std::size_t i = 0; i < parts.size(); ++i)
            if (order == -1 || i == static_cast<std::size_t>(order))
                for (double& number : i == 0 ? first : parts[i])
                    all.push_back(&number);
        return all;
    }
    void check(const State& state) {
        const auto equal = [](double number, const double* place) { return number == *place; };
        const auto isAt = [&](const Vector& vector, const std::vector<double*>& places) {
            return std::equal(vector.begin(), vector.end(), places.begin(), places.end(), equal);
        };
        Vector stored(static_cast<unsigned int>(state.stateDimension()));
        state.getStateData(stored);
        FUZZ_CHECK(isAt(stored, places(-1, data)));
        for (int order = -1; order < state.getMaxOrder(); ++order) {
            Vector inc(static_cast<unsigned int>(order == -1 ? state.stateIncDimension() : state.poseDoF()));
            state.getStateIncData(inc, order);
            FUZZ_CHECK(isAt(inc, places(order, parts[0])));
        }
        FUZZ_CHECK(state.getTimeStamp() == time);
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const char* const OPERATIONS[] = {"set",          "set incremental", "reset all", "reset incremental",
                                             "assign other", "clone other",     "copy other"};
    Input input(bytes, size);
    const auto numbers = [&](std::size_t count) {
        Vector made(static_cast<unsigned int>(count));
        std::generate(made.begin(), made.end(), [&] { return input.byte(); });
        return made;
    };
    const TestPose pose(input.below(12), input.below(12));
    const int order = input.below(5) - 1;
    std::unique_ptr<State> states[] = {std::make_unique<State>(pose, order), std::make_unique<State>(pose, order)};
    Input::note("pose of ", pose.dimension(), " and ", pose.dof(), ", order ", order);
    Model fresh{Numbers(static_cast<std::size_t>(pose.dimension()), 1.0),
                {static_cast<std::size_t>(std::max(order, 1)), Numbers(static_cast<std::size_t>(pose.dof()))}};
    std::fill(fresh.parts[0].begin(), fresh.parts[0].end(), 2.0);
    Model models[] = {fresh, fresh};
    while (!input.atEnd()) {
        const int operation = input.below(7);
        const int target = input.below(2);
        State& state = *states[target];
        Model& model = models[target];
        const int part = input.below(static_cast<int>(model.parts.size()) + 1) - 1;  // -1 for all
        Input::note("state ", target, ": ", OPERATIONS[operation], ", part ", part);
        if (operation < 2) {
            Numbers& first = operation == 0 ? model.data : model.parts[0];
            const std::vector<double*> places = model.places(part, first);
            const Vector made = numbers(operation == 0 && part > 0 ? first.size() : places.size());
            operation == 0 ? state.setDataFromVector(made, part) : state.setIncDataFromVector(made, part);
            for (std::size_t i = 0; i < std::min(places.size(), std::size_t{made.dimension()}); ++i)
                *places[i] = made.begin()[i];
        } else if (operation == 2) {
            state.resetAll();
            state.setTimeStamp(input.byte());
            model = {fresh.data, fresh.parts, state.getTimeStamp()};
        } else if (operation == 3) {
            state.resetIncData();
            model.parts = fresh.parts;
        } else {
            if (operation == 4)
                state = *states[1 - target];
            else
                states[target].reset(operation == 5 ? states[1 - target]->clone() : new State(*states[1 - target]));
            model = models[1 - target];
        }
        for (int i = 0; i < 2; ++i)
            models[i].check(*states[i]);
    }
    return 0;
}
