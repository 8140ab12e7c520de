/// Classes of characters. Nothing is used of them; the C++ library includes the header.
#pragma once
