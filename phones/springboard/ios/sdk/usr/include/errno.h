/// The numbers of the errors that the C++ library tells apart.
#pragma once

extern "C" int* __error(void);
#define errno (*__error())

#define EINTR 4
