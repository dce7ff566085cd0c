#include "dmcommon/metadata/dmfieldgroup.h"

DMFieldGroup::DMFieldGroup() : type_(GroupType::FieldGroup) {}

DMFieldGroup::DMFieldGroup(GroupType type, const std::string& name,
                           const std::vector<std::string>& fieldNames, const std::string& label,
                           const std::string& countedValue)
    : type_(type),
      name_(name),
      fieldNames_(fieldNames),
      label_(label),
      countedValue_(countedValue) {}

DMFieldGroup::DMFieldGroup(const DMFieldGroup& other) = default;

DMFieldGroup& DMFieldGroup::operator=(const DMFieldGroup& other) = default;

DMFieldGroup::~DMFieldGroup() = default;

DMFieldGroup::GroupType DMFieldGroup::GetType() const { return type_; }

const std::string& DMFieldGroup::GetName() const { return name_; }

const std::vector<std::string>& DMFieldGroup::GetFieldNames() const { return fieldNames_; }

const std::string& DMFieldGroup::GetLabel() const { return label_; }

const std::string& DMFieldGroup::GetCountedValue() const { return countedValue_; }
