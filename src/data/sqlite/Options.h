#pragma once

namespace zv {

/// When a statement that returned is flushed to disk: at once, or when the system likes (for benchmarks, that
/// measure our own cost).
enum class Durability { full, off };

/// Whether prepared statements are reused by statements that differ in their values alone.
enum class Reuse { yes, no };

} // namespace zv
