// Generated from garden.yaml. Changes belong there.
#pragma once

#include <quay/zero/elements/pattern.h>
#include <boost/optional.hpp>
#include <quay/zero/element_map.h>
#include <quay/zero/element_sequence.h>
#include <quay/zero/element_set.h>
#include <quay/zero/primitive_collection.h>
#include <zx/array_holder.h>

#include "Garden/Enumerations.h"
#include "Garden/Handles.h"

namespace Garden {

/// A bed of the garden.
class GARDEN_API Bed::Impl : public quay::zero::elements::Level<Bed, quay::zero::ModelElement> {
 public:
  Impl(quay::zero::Model const& model, boost::uuids::uuid const& id);
  template <class B>
  class BuilderBase;

  /// Text on the bed's sign.
  std::u16string const& getLabel() const { return label_; }
  void setLabel(std::u16string const& value);

  /// What the bed is filled with.
  Soil getSoil() const { return soil_; }
  void setSoil(Soil value);

  /// Width in metres.
  double getWidth() const { return width_; }
  void setWidth(double value);

  /// Width in feet.
  double getWidthInFeet() const;
  void setWidthInFeet(double value);

  /// Drawing of the bed; null for none.
  zxArray_tag const* getPlan() const { return plan_.get(); }
  void setPlan(zxArray_tag const* value);

  /// Waterings a day; unset when the weather decides.
  boost::optional<int> const& getWaterings() const { return waterings_; }
  void setWaterings(boost::optional<int> const& value);
  bool hasWaterings() const { return waterings_.has_value(); }

  /// Moisture readings, oldest first.
  quay::zero::PrimitiveSequence<double> const* getReadings() const { return &readings_; }
  quay::zero::PrimitiveSequence<double>* getReadingsMutable() { return &readings_; }
  bool hasReadings() const { return !readings_.empty(); }

  /// Words by which the bed is found.
  quay::zero::PrimitiveSet<std::string> const* getTags() const { return &tags_; }
  quay::zero::PrimitiveSet<std::string>* getTagsMutable() { return &tags_; }
  bool hasTags() const { return !tags_.empty(); }

  /// The cold frame over the bed.
  Frame getFrame() const;
  void setFrame(Frame const& value);
  bool hasFrame() const { return bool(frame_); }
  void basicSetFrame(Frame const& value);
  Frame createIntoFrame();
  Frame createIntoFrame(Frame::BuilderWrapper builder, boost::uuids::uuid const& id = {});

  /// Frames from north to south.
  quay::zero::ElementSequence<Frame> const* getFrames() const { return readable(frames_); }
  quay::zero::ElementSequence<Frame>* getFramesMutable() { return readable(frames_); }
  bool hasFrames() const { return !frames_.empty(); }
  Frame createIntoFrames();
  Frame createIntoFrames(Frame::BuilderWrapper builder, boost::uuids::uuid const& id = {});

  /// What plants climb on.
  quay::zero::UnorderedElementSet<Support> const* getSupports() const { return readable(supports_); }
  quay::zero::UnorderedElementSet<Support>* getSupportsMutable() { return readable(supports_); }
  bool hasSupports() const { return !supports_.empty(); }
  Support createIntoSupports(Support::BuilderWrapper builder, boost::uuids::uuid const& id = {});

  /// Single plants, by name.
  quay::zero::ElementMap<std::u16string, Plant> const* getPlants() const { return readable(plants_); }
  quay::zero::ElementMap<std::u16string, Plant>* getPlantsMutable() { return readable(plants_); }
  bool hasPlants() const { return !plants_.empty(); }
  Plant createIntoPlants();
  Plant createIntoPlants(Plant::BuilderWrapper builder, boost::uuids::uuid const& id = {});

  /// More plants, by height.
  quay::zero::ElementMultimap<double, Plant> const* getByHeight() const { return readable(byHeight_); }
  quay::zero::ElementMultimap<double, Plant>* getByHeightMutable() { return readable(byHeight_); }
  bool hasByHeight() const { return !byHeight_.empty(); }
  Plant createIntoByHeight();
  Plant createIntoByHeight(Plant::BuilderWrapper builder, boost::uuids::uuid const& id = {});

 private:
  struct [[gnu::visibility("hidden")]] Descriptors;
  friend class Bed;

  std::u16string label_;
  Soil soil_ = Soil::Loam;
  double width_ = 1.2;
  quay::zero::ArrayHolder plan_;
  boost::optional<int> waterings_;
  quay::zero::PrimitiveSequence<double> readings_;
  quay::zero::PrimitiveSet<std::string> tags_;
  Frame frame_;
  quay::zero::ElementSequence<Frame> frames_;
  quay::zero::UnorderedElementSet<Support> supports_;
  quay::zero::ElementMap<std::u16string, Plant> plants_;
  quay::zero::ElementMultimap<double, Plant> byHeight_;
};

/// Collects the content of a new Bed; every setter returns the builder.
template <class B>
class Bed::Impl::BuilderBase : public quay::zero::elements::BuilderBase<B, quay::zero::ModelElement> {
 public:
  using quay::zero::elements::BuilderBase<B, quay::zero::ModelElement>::BuilderBase;

  B& setLabel(std::u16string value) { return this->give(1, std::move(value)); }
  B& setSoil(Soil value) { return this->give(2, value); }
  B& setWidth(double value) { return this->give(3, value); }
  B& setPlan(zxArray_tag const* value) { return this->give(4, quay::zero::ArrayHolder(value)); }
  B& setWaterings(boost::optional<int> value) { return this->give(5, std::move(value)); }
  B& addReadings(double value) { return this->append(6, value); }
  B& addReadings(std::initializer_list<double> values) { return this->append(6, values); }
  B& clearReadings() { return this->template dropValues<double>(6); }
  B& addTags(std::string value) { return this->append(7, std::move(value)); }
  B& addTags(std::initializer_list<std::string> values) { return this->append(7, values); }
  B& clearTags() { return this->template dropValues<std::string>(7); }
  B& setFrame(std::unique_ptr<quay::zero::ModelElement::Builder> child) { return this->giveChild(8, std::move(child)); }
  B& addFrames(std::unique_ptr<quay::zero::ModelElement::Builder> child) { return this->appendChild(9, std::move(child)); }
  B& clearFrames() { return this->dropChildren(9); }
  B& addSupports(std::unique_ptr<quay::zero::ModelElement::Builder> child) { return this->appendChild(10, std::move(child)); }
  B& clearSupports() { return this->dropChildren(10); }
  B& addPlants(std::unique_ptr<quay::zero::ModelElement::Builder> child) { return this->appendChild(11, std::move(child)); }
  B& clearPlants() { return this->dropChildren(11); }
  B& addByHeight(std::unique_ptr<quay::zero::ModelElement::Builder> child) { return this->appendChild(12, std::move(child)); }
  B& clearByHeight() { return this->dropChildren(12); }
};

/// The properties of Bed as the words of one query.
class GARDEN_API Bed::Constrainables : public quay::zero::ModelElement::Constrainables {
 public:
  Constrainables(quay::zero::query::AbstractQuery& query, quay::zero::meta::Class const& cls, quay::zero::query::SearchClassMatchMode mode);
  explicit Constrainables(std::pair<quay::zero::query::AbstractQuery&, quay::zero::query::SearchClassMatchMode const> const& asked) : Constrainables(asked.first, metaClass(), asked.second) {}

  Constrainable<std::u16string> label;
  Constrainable<Soil> soil;
  Constrainable<double> width;
  OptionalConstrainable<int> waterings;
  ConstrainableRelation<Frame> frame;
  ConstrainableRelation<Frame> frames;
  ConstrainableRelation<Support> supports;
  ConstrainableRelation<Plant> plants;
  ConstrainableRelation<Plant> byHeight;
};

}  // namespace Garden
