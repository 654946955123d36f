#include "Kestrova/detail/text/LargeText.h"
