#include <ModelRefInfoRepo/ModelRefInfoRepo.h>

#include <iostream>

namespace qz = quay::zero;

int main() {
    auto const model = qz::Model::create();
    auto const root = ModelRefInfoRepo::ModelRefInfoRoot::create(model, qz::ElementImpl::generateNewUuid());
    root->setTriggerType(3);
    root->createIntoInports();
    if (root->getTriggerType() != 3 || root->getInports()->size() != 1) {
        std::cerr << "the installed library doesn't keep what it is given\n";
        return 1;
    }
    return 0;
}
