#pragma once

namespace zv {

/// When a statement that returned is on disk: at once, or when the system likes (for benchmarks, that measure
/// our own cost).
enum class Durability { full, off };

/// Whether statements that differ in their values alone share what the engine made of the first (its prepared
/// statement).
enum class Reuse { yes, no };

} // namespace zv
