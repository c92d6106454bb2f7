// A compile stage and a consumer in one program: the interface of a small model is recorded with builders, read back,
// changed with a listener, rolled back, undone, searched by queries, and kept in a file.
#include <ModelRefInfoRepo/ModelRefInfoRepo.h>
#include <keel/exception.h>
#include <keel/text.h>
#include <quay/zero/change_set.h>
#include <quay/zero/io/io.h>

#include <filesystem>
#include <iostream>
#include <memory>

namespace {

using namespace ModelRefInfoRepo;
namespace qz = quay::zero;

// --- The compile stage: describe everything first, and create it in one transaction ----------------------------------

RateInfo rateOf(double period, std::u16string const& partition) {
    RateInfo rate;
    rate.setPeriod(period);
    rate.setNonFcnCallPartitionName(partition);
    return rate;
}

std::unique_ptr<InportInformation::Builder> describeInport(std::u16string const& label, unsigned number) {
    auto port = std::make_unique<InportInformation::Builder>();
    port->setCompiledSignalLabel(label);
    port->setOriginalPortNumber(number);
    port->setDesignMin(-400);
    port->setDesignMax(400);
    port->addRateInfos(rateOf(0.001, u"control"));
    return port;
}

ModelRefInfoRoot recordInterface(qz::Model const& model) {
    ModelRefInfoRoot::Builder root(model);
    root.setFundamentalSampleTimePeriod(0.001);
    root.addRuntimeNonFcnCallRateInfos(rateOf(0.001, u"control"));
    root.addInports(describeInport(u"wanted", 0));
    root.addInports(describeInport(u"measured", 1));
    auto torque = std::make_unique<OutportInformation::Builder>();
    torque->setCompiledSignalLabel(u"torque");
    torque->addRateInfos(rateOf(0.001, u"control"));
    root.addOutports(std::move(torque));

    auto ports = std::make_unique<DataPortGroup::Builder>();
    ports->addDataInputPorts({0, 1}).addDataOutputPorts(0);
    root.setDataPortGroup(std::move(ports));

    auto buses = std::make_unique<StructTypeBusTypeElem::Builder>();
    buses->setStructType("motor_t").setBusType("MotorBus");
    root.addStructTypeBusTypeMap(std::move(buses));
    return root.create();
}

// --- The consumer ---------------------------------------------------------------------------------------------------

void print(ModelRefInfoRoot const& root) {
    for (InportInformation const& port : *root->getInports()) {
        std::cout << "  inport " << port->getOriginalPortNumber() << ' ' << keel::toUtf8(port->getCompiledSignalLabel())
                  << " within [" << port->getDesignMin() << ", " << port->getDesignMax() << "] every "
                  << port->getRateInfo().getPeriod() << " s\n";
    }
    for (OutportInformation const& port : *root->getOutports()) {
        std::cout << "  outport " << keel::toUtf8(port->getCompiledSignalLabel()) << '\n';
    }
    StructTypeBusTypeElem const bus = root->getStructTypeBusTypeMap()->find("motor_t");
    std::cout << "  motor_t is " << (bus ? bus->getBusType() : "not a bus") << '\n';
}

void listen(qz::ChangeSet const& changes) {
    std::cout << "  told: " << changes.created().size() << " created, " << changes.destroyed().size() << " destroyed";
    for (auto const& change : changes.changed()) {
        for (auto const& property : change.properties()) std::cout << ", " << keel::toUtf8(property->getName());
    }
    std::cout << '\n';
}

void changeAndTakeBack(ModelRefInfoRoot const& root) {
    qz::Model const model = root->getModel();
    model->addListener(listen);
    model->enableHistory(100);

    std::cout << "One change, told once\n";
    {
        qz::Transaction transaction = model->beginTransaction(false);
        for (InportInformation const& port : *root->getInports()) port->setDesignMax(500);
        root->createIntoInports()->setCompiledSignalLabel(u"mode");
        transaction.commit(boost::none);
    }
    print(root);

    std::cout << "A change that fails half-way leaves nothing\n";
    try {
        qz::Transaction transaction = model->beginTransaction(false);
        root->getInports()->begin()->impl()->setDesignMax(0);
        StructTypeBusTypeElem::Builder bus;
        bus.setStructType("motor_t");
        root->createIntoStructTypeBusTypeMap(bus);  // an entry with that key exists already
        transaction.commit(boost::none);
    } catch (keel::core::except::Error const& error) {
        std::cout << "  " << error.what() << '\n';
    }
    print(root);

    std::cout << "Undo\n";
    model->undo();
    print(root);
}

void ask(qz::Model const& model) {
    auto const constraint =
        InportInformation::designMax() > 300.0 && InportInformation::compiledSignalLabel().startsWith(u"m");
    std::cout << "Asked for inports above 300 whose label begins with m:";
    for (InportInformation const& port : qz::query::find<InportInformation>(model, constraint)) {
        std::cout << ' ' << keel::toUtf8(port->getCompiledSignalLabel());
    }
    std::cout << '\n';
}

void keep(qz::Model const& model) {
    std::filesystem::path const path = std::filesystem::temp_directory_path() / "record_interface.record";
    qz::io::save(model, path);
    qz::Model const again = qz::io::load(path, qz::io::Limits{});
    std::cout << "Saved " << std::filesystem::file_size(path) << " bytes, loaded " << again->elementCount()
              << " elements; the same text: " << std::boolalpha << (qz::io::toText(again) == qz::io::toText(model))
              << '\n';
    std::filesystem::remove(path);
}

}  // namespace

int main() {
    qz::Model const model = qz::Model::create();
    std::cout << "Recorded with builders\n";
    ModelRefInfoRoot const root = recordInterface(model);
    print(root);
    changeAndTakeBack(root);
    ask(model);
    keep(model);
}
