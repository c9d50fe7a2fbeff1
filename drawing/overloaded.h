#pragma once

// One std::visit over the entity kinds, a lambda a kind.

namespace tessaran::drawing {

template <class... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

} // namespace tessaran::drawing
