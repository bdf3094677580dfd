// The stream classes and helpers in one include.
#pragma once

#include "utils/streams/DataContainer.h"
#include "utils/streams/DataContainerMemBuffer.h"
#include "utils/streams/DataContainerVector.h"
#include "utils/streams/ErrorText.h"
#include "utils/streams/FileStream.h"
#include "utils/streams/MemStream.h"
#include "utils/streams/RandomAccessStream.h"
#include "utils/streams/StreamBase.h"
#include "utils/streams/StreamHelpers.h"
#include "utils/streams/StreamInterfaces.h"
#include "utils/streams/TextConversion.h"
#include "utils/streams/TextEncoding.h"
#include "utils/streams/TextStreamReader.h"
#include "utils/streams/TextStreamWriter.h"
