#pragma once

#include <QString>

class Drives;
class Folders;

/// The start of a search for the data folder: "X:\" with the first letter from "C" upward that has a network
/// connection; 25 letters are asked, the last of them the character behind "Z". Without any, the drive of the
/// current folder as "X:\", or the whole current folder where folders have no drive.
[[nodiscard]] QString FirstNetworkDrive(const Drives& drives, const Folders& folders);
