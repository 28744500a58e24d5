/// @file
/// Programs over two states, beside a model that keeps pose and blocks in vectors.

#include "Input.h"
#include "core/trackingdata/State.h"
#include "support/Poses.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace {

using tarvos::core::State;
using tarvos::math::Vector;
using Numbers = std::vector<double>;

struct Model {
    Numbers data;
    std::vector<Numbers> parts;  ///< the incremental data and the blocks
    double time = 0.0;

    /// The pieces that a vector of order @p order is made of, in the form whose pose part is @p pose.
    std::vector<Numbers*> piecesOf(int order, Numbers& pose) {
        std::vector<Numbers*> pieces;
        for (Numbers& part : parts)
            pieces.push_back(&part == &parts[0] ? &pose : &part);
        return order == -1 ? pieces : std::vector{pieces[static_cast<std::size_t>(order)]};
    }
    Numbers packed(int order, Numbers& pose) {
        Numbers all;
        for (const Numbers* piece : piecesOf(order, pose))
            all.insert(all.end(), piece->begin(), piece->end());
        return all;
    }
    void unpack(const Vector& vector, int order, Numbers& pose) {
        const double* next = vector.begin();
        for (Numbers* piece : piecesOf(order, pose)) {
            const auto count = std::min(piece->size(), static_cast<std::size_t>(vector.end() - next));
            std::copy_n(next, count, piece->begin());
            next += count;
        }
    }
};

void check(const State& state, Model& model) {
    Vector data(static_cast<unsigned int>(state.stateDimension()));
    state.getStateData(data);
    FUZZ_CHECK(elementsOf(data) == model.packed(-1, model.data));
    for (int order = -1; order < state.getMaxOrder(); ++order) {
        Vector incData(static_cast<unsigned int>(order == -1 ? state.stateIncDimension() : state.poseDoF()));
        state.getStateIncData(incData, order);
        FUZZ_CHECK(elementsOf(incData) == model.packed(order, model.parts[0]));
    }
    FUZZ_CHECK(state.getTimeStamp() == model.time);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    Input input(bytes, size);
    const auto numbers = [&](std::size_t count) {
        Vector made(static_cast<unsigned int>(count));
        std::generate(made.begin(), made.end(), [&] { return input.byte(); });
        return made;
    };
    const TestPose pose(input.below(12), input.below(12));
    const int order = input.below(5) - 1;
    std::unique_ptr<State> states[] = {std::make_unique<State>(pose, order), std::make_unique<State>(pose, order)};
    Model fresh{Numbers(static_cast<std::size_t>(pose.dimension()), 1.0),
                std::vector<Numbers>(order > 1 ? static_cast<std::size_t>(order) : 1,
                                     Numbers(static_cast<std::size_t>(pose.dof()), 0.0))};
    std::fill(fresh.parts[0].begin(), fresh.parts[0].end(), 2.0);
    Model models[] = {fresh, fresh};
    while (!input.isOver()) {
        const int operation = input.below(7);
        const int target = input.below(2);
        State& state = *states[target];
        Model& model = models[target];
        const int part = input.below(static_cast<int>(model.parts.size()) + 1) - 1;  // -1 for all
        if (operation == 0) {
            const Vector made = numbers(part == -1 ? model.packed(-1, model.data).size() : model.data.size());
            state.setDataFromVector(made, part);
            model.unpack(made, part, model.data);
        } else if (operation == 1) {
            const Vector made = numbers(model.packed(part, model.parts[0]).size());
            state.setIncDataFromVector(made, part);
            model.unpack(made, part, model.parts[0]);
        } else if (operation == 2) {
            state.resetAll();
            state.setTimeStamp(input.byte());
            model = {fresh.data, fresh.parts, state.getTimeStamp()};
        } else if (operation == 3) {
            state.resetIncData();
            model.parts = fresh.parts;
        } else if (operation == 4) {
            state = *states[1 - target];
            model = models[1 - target];
        } else {
            states[target].reset(operation == 5 ? states[1 - target]->clone() : new State(*states[1 - target]));
            model = models[1 - target];
        }
        check(*states[0], models[0]);
        check(*states[1], models[1]);
    }
    return 0;
}
