#pragma once

/// What the tools tell the shell. The man pages list these numbers.
namespace ExitCode {
inline constexpr int Fine = 0;
/// A check found a problem; a gateway lost its outbox while it ran.
inline constexpr int Problem = 1;
/// The command line was not understood; nothing was done.
inline constexpr int Usage = 2;
/// A folder or file could not be opened or written, or was there already.
inline constexpr int CannotOpen = 3;
/// Stopped by a signal before the work was done; nothing is left half made.
inline constexpr int Stopped = 4;
}  // namespace ExitCode
