#pragma once

#include "bench/Answer.h"
#include "bench/Host.h"

#include "page/Page.h"

#include <string>
#include <vector>

namespace bench {

// Types as a device sheet shows them; a type is a document as ReadType makes it.

/// The same of a type that only the catalogue tells, such as that of an input. Null
/// when the catalogue has none of this number.
Json TypeOfCatalogue(const Host& host, const std::wstring& id);

/// The columns of a type, and its cells: type, unit, limits, resolution.
std::vector<page::Column> TypeColumns();
std::vector<page::Cell> TypeCells(const Json& type);

/// The step from one value to the next, a times ten to the power of b, with this
/// decimal mark. Empty for types that have none.
std::string Resolution(const std::string& generalType, long a, long b, const std::string& mark);
/// The mark between whole and broken numbers that this user has, as the component finds it.
std::string DecimalMark();

/// The entries of "value,label;value,label;".
std::vector<page::Label> Labels(const std::string& description);

/// The enumerations of a module, each once, with the points that have it.
class Enumerations {
  public:
    void Add(const Json& type, const std::string& point);
    std::vector<page::Enumeration> List() const { return list_; }

  private:
    std::vector<std::string> descriptions_;
    std::vector<page::Enumeration> list_;
};

} // namespace bench
