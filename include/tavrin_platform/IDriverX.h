/// @file
/// The driver interface of the driver host, which is only passed through.
#pragma once

/// A driver as its host sees it.
class IDriverX;
