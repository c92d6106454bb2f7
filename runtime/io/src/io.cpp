#include <quay/zero/io/io.h>

#include "failures.h"
#include "files.h"
#include "forms.h"
#include "lazy_file.h"
#include "reading.h"
#include "values.h"
#include "writer.h"

namespace quay::zero::io {

namespace {

/// Adds the elements of a source, a text or a file, to the model and returns the roots among them.
template <class Source>
std::vector<ModelElement> readInto(Model const& model, std::string const& name, Source& source, Limits const& limits) {
    Transaction transaction = model->beginTransaction(false);
    Reading reading(model, name, limits);
    reading.feed(source);
    std::vector<ModelElement> roots = reading.finish();
    transaction.commit(boost::none);
    return roots;
}

}  // namespace

std::string toText(Model const& model) { return Writer(model).write(); }

std::string toText(ModelElement const& element) { return Writer(element->getModel()).write(element); }

std::string propertyText(ModelElement const& element, meta::Property const& property) {
    FieldForm const form = formOf(property);
    std::string out;
    try {
        appendProperty(out, form, element->getPropertyValue(property, ReflectionPrivateTag::PUBLIC_ACCESS));
    } catch (Refused const& refused) {
        reportSave(form.name, refused.what());
    }
    return out;
}

void save(Model const& model, std::filesystem::path const& path) {
    TargetFile file(path);
    Writer writer(model, [&](std::string& text) {
        file.write(text);
        text.clear();
    });
    file.write(writer.write());
    file.commit();
}

void writeFile(std::filesystem::path const& path, std::string_view text) {
    TargetFile file(path);
    file.write(text);
    file.commit();
}

Model fromText(std::string_view text, Limits const& limits) {
    Model model = Model::create();
    fromTextInto(model, text, limits);
    return model;
}

Model load(std::filesystem::path const& path, Limits const& limits, Loading loading) {
    Model model = Model::create();
    if (loading == Loading::Lazy) {
        loadLazily(model, path, limits);
    } else {
        loadInto(model, path, limits);
    }
    return model;
}

std::vector<ModelElement> fromTextInto(Model const& model, std::string_view text, Limits const& limits) {
    return readInto(model, "text", text, limits);
}

std::vector<ModelElement> loadInto(Model const& model, std::filesystem::path const& path, Limits const& limits) {
    SourceFile file(path);
    return readInto(model, file.name(), file, limits);
}

}  // namespace quay::zero::io
