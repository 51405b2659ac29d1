// Built against an installed talvex through find_package(talvex).
#include <sorvane/arf/node/RootNode.h>
#include <sorvane/sorvane.h>

#include <iostream>
#include <memory>

int main() {
    auto root = std::make_shared<sorvane::arf::RootNode>();
    root->init();
    sorvane_clearErrorMessage();
    std::cout << root->toJsonString().size() << std::endl;
    return 0;
}
