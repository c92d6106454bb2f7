#include "record.h"

namespace queries {

ModelRefInfoRoot build(qz::Model const& model) {
    qz::Transaction transaction = model->beginTransaction(false);
    ModelRefInfoRoot const root = ModelRefInfoRoot::create(model, {});
    for (int i = 0; i < 12; ++i) {
        RootIOPortInformation port;
        if (i % 3 == 0) {
            OutportInformation const out = root->createIntoOutports();
            out->setConstantOutputValue(i % 2 == 0 ? "even" : "");
            port = out;
        } else {
            InportInformation const in = root->createIntoInports();
            in->setIsNotDerivPort(i % 2 == 0);
            if (i % 4 == 0) in->createIntoDataEventsInfo();
            port = in;
        }
        port->setDesignMin(i * 0.5 - 2);
        port->setTrueHiers(i % 2 == 0 ? "top.even" : "top.odd." + std::to_string(i));
        for (int n = 0; n < i % 4; ++n) port->createIntoHierCondInfos()->setHierIdx(static_cast<unsigned>(i + n));
    }
    VarTsUIDMap const map = root->createIntoVarTsUIDMap();
    for (int i = 0; i < 4; ++i) {
        VarTsUIDEntry::Builder entry;
        entry.setVarTsIdx(i - 2).setVarTsUID(i % 2 == 0 ? u"a\u00e9" : u"b");
        map->createIntoEntries(entry);
    }
    root->createIntoControllableInputRatesMap();
    for (int i = 0; i < 3; ++i) {
        UnionTsContainedTsElem::Builder elem;
        elem.setUnionTs(i / 2).setContainedTs(i);
        root->createIntoUnionTsContainedTs(elem);
    }
    root->setNumTs(7);
    ModelRefInfoRoot const other = ModelRefInfoRoot::create(model, {});
    other->setIsRefModelConstant(false);
    ModelRefInfoRoot::create(model, {})->setIsRefModelConstant(true);
    for (int i = 0; i < 3; ++i) SampleTimeGraphEdge::create(model, {})->setSrcNodeIdx(i == 0 ? ~0UL : 4UL * i);
    transaction.commit(boost::none);
    return root;
}

}  // namespace queries
