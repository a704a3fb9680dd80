// The version that the build gives (CMakeLists.txt, project).
#pragma once

#ifndef BDC_VERSION
#error "the build defines BDC_VERSION"
#endif
