#pragma once

namespace tests {

/// True in Wine. Where Wine alone differs, a test asserts there what is known of it
/// (docs/testing.md), and everywhere else what Windows does.
bool IsWine();
/// The number before the first point, such as 8; 0 in Windows. For what two Wines do
/// differently.
int WineVersion();

/// The flags with which a test starts a program whose output it reads from files: without a
/// console where the test has none. Wine would make one for each such program, in a process
/// that costs more than most of them.
unsigned long WithoutConsole();

} // namespace tests
