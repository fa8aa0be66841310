#include "kovabase/geometry/Gk_Def.h"

#include <numbers>

constinit double Gk_Def::FuzzReal = 1e-10;
constinit double Gk_Def::FuzzPos = 1e-06;
constinit double Gk_Def::FuzzKnot = 1e-10;
constinit double Gk_Def::FuzzSnap = 0.001;
constinit double Gk_Def::KOVAPI = std::numbers::pi;
constinit double Gk_Def::KOVAPIBYTWO = std::numbers::pi / 2;
