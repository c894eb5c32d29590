#pragma once

namespace vx {

// Joins lambdas into one visitor for std::visit, one lambda per alternative.
template <class... Handlers>
struct Overloaded : Handlers... {
    using Handlers::operator()...;
};
// Spelled out for compilers that don't deduce an aggregate's arguments by themselves.
template <class... Handlers>
Overloaded(Handlers...) -> Overloaded<Handlers...>;

}  // namespace vx
