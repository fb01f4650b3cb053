// Generated from tests/nd_data_adapter/model/generator/small.yaml; do not edit.
#pragma once

#include <boost/uuid/uuid.hpp>
#include <map>

#include "tests/nd_data_adapter/model/generator/export.h"
#include "platform/foundation/meta/AbstractMetaPackage.h"

namespace shop::detail {

/// The description of the classes at run time. The first `getInstance` builds it and registers it with the
/// foundation's `MetaRegistry`.
class SHOP_EXPORT MetaPackageSmall : public ::lx::base::meta::AbstractMetaPackage {
 public:
  static MetaPackageSmall& getInstance();

  /// Build the description and register its root packages, in place of those that are there; an exception leaves
  /// the registry as it was.
  void initialize();

  /// Give a class by its identifier. Raises `NoSuchType`.
  ::lx::base::meta::Class getClass(const ::boost::uuids::uuid& uuid) const;

 private:
  MetaPackageSmall();
  ~MetaPackageSmall() override;

  static void instantiate_shop(Parts& parts);
  static void instantiate_shop_stock(Parts& parts);
  static void weave_shop(Parts& parts);
  static void weave_shop_stock(Parts& parts);

  ::std::map<::boost::uuids::uuid, ::lx::base::meta::Class> classes_;
};

}  // namespace shop::detail
