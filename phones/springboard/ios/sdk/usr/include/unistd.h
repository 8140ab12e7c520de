/// Waiting.
#pragma once

extern "C" unsigned int sleep(unsigned int seconds);
