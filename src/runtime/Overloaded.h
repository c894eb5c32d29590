#pragma once

namespace vx {

// Joins lambdas into one visitor for std::visit, one lambda per alternative.
template <class... Handlers>
struct Overloaded : Handlers... {
    using Handlers::operator()...;
};

}  // namespace vx
