#include "ChecksModule.h"
#include "Library.h"

int main(int argc, char** argv)
{
    const Library engine(ENGINE_LIBRARY);
    const Library module(CHECKS_MODULE);
    return module.function<decltype(&runChecks)>("runChecks")(argc, argv);
}
