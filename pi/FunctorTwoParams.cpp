#include "pi/FunctorTwoParams.h"

std::vector<FunctorTwoParams__*> g_FunctorList;

void freeFunctors() {
    for (auto* functor : g_FunctorList) delete functor;
    g_FunctorList.clear();
}
