#pragma once

namespace vx {

// Joins lambdas into one visitor for std::visit, one lambda per alternative.
template <class... Handlers>
struct Overloaded : Handlers... {
    using Handlers::operator()...;
};
// Spelled out for the compilers that do not yet deduce an aggregate's
// arguments by themselves, such as the clang of the fuzz build.
template <class... Handlers>
Overloaded(Handlers...) -> Overloaded<Handlers...>;

}  // namespace vx
