#pragma once

/// All that a host needs to create filters by name, set them up and render them. The header of a class is only
/// needed for what its properties' names do not reach.
#include "Platform/Foundation/Log.h"
#include "Platform/ImageGraph/MTIContext.h"
#include "Platform/ImageGraph/MTIImage.h"
#include "Platform/ImageGraph/MTIVulkan.h"
#include "Platform/Media/Bitmap.h"
#include "Platform/Media/ImageFile.h"
#include "Platform/Media/PixelBuffer.h"
#include "QVFilterCore/QVAIEffectMTIFilter.h"
#include "QVFilterCore/QVEffectMTIFilter.h"
#include "QVFilterCore/QVFilterClass.h"
#include "QVFilterCore/QVMTIFilter.h"
#include "QVFilterCore/QVMTIOneInputFilter.h"
#include "QVFilterCore/QVMTITwoInputFilter.h"
#include "QVFilterCore/QVResourceBundle.h"
#include "QVFilterCore/QVTransitionMTIFilter.h"
#include "QVFilterExtension/QVFilterClassJSON.h"
#include "QVFilterExtension/QVFilterRegistry.h"
#include "QVFilterExtension/QVFilterVersion.h"
