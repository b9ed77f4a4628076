#pragma once

/// From now on a reader of the program's output who goes away ends nothing: whoever writes to him is told
/// that it failed. Called first of all in each program.
void PassOverBrokenPipes();
