#include <quay/zero/meta/abstract_meta_package.h>

#include <boost/uuid/string_generator.hpp>

namespace quay::zero::meta {

namespace {

Model const& model() { return MetaRegistry::getInstance()->model(); }

boost::uuids::uuid parseId(std::string const& text) { return boost::uuids::string_generator()(text); }

template <class X>
X named(std::u16string const& name, boost::uuids::uuid const& id) {
    X made = X::create(model(), id);
    made->setName(name);
    return made;
}

}  // namespace

Package AbstractMetaPackage::createPackage(std::u16string const& uri, std::u16string const& name) {
    auto made = named<Package>(name, {});
    made->setUri(uri);
    return made;
}

Class AbstractMetaPackage::createClass(std::u16string const& name, std::string const& scriptName, bool isAbstract,
                                       std::string const& id) {
    auto made = named<Class>(name, parseId(id));
    made->setScriptName(scriptName);
    made->setIsAbstract(isAbstract);
    return made;
}

DataType AbstractMetaPackage::createDataType(std::u16string const& name, std::string const& scriptName,
                                             std::string const& id) {
    auto made = named<DataType>(name, parseId(id));
    made->setScriptName(scriptName);
    return made;
}

Enum AbstractMetaPackage::createEnum(std::u16string const& name, std::string const& id) {
    return named<Enum>(name, parseId(id));
}

EnumLiteral AbstractMetaPackage::createEnumLiteral(std::u16string const& name, int value, std::string const& id) {
    auto made = named<EnumLiteral>(name, parseId(id));
    made->setValue(value);
    return made;
}

Property AbstractMetaPackage::createProperty(std::u16string const& name, ValueFlags flags, bool isComposite,
                                             std::string const& id) {
    auto made = named<Property>(name, parseId(id));
    made->setFlags(flags);
    made->setIsComposite(isComposite);
    return made;
}

Operation AbstractMetaPackage::createOperation(std::u16string const& name, boost::uuids::uuid const& id) {
    return named<Operation>(name, id);
}

Argument AbstractMetaPackage::createArgument(std::u16string const& name, boost::uuids::uuid const& id) {
    return named<Argument>(name, id);
}

void AbstractMetaPackage::setPropertyIndex(Property const& property, int index) { property->setIndex(index); }

void AbstractMetaPackage::registerRootPackage(Package const& package) {
    MetaRegistry::getInstance()->registerRootPackage(package);
}

void AbstractMetaPackage::unregisterRootPackage(std::u16string const& uri) {
    MetaRegistry::getInstance()->unregisterRootPackage(uri);
}

}  // namespace quay::zero::meta
