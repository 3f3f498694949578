// rust-render CLASS WIDTH HEIGHT [name=value ...] < in.rgb > out.rgb: one effect over one frame of raw RGB, through the C interface.

use std::ffi::{c_void, CStr, CString};
use std::io::{Read, Write};
use std::os::raw::{c_char, c_int};

#[repr(C)]
struct Frame {
    size: usize,
    format: i32,
    width: i32,
    height: i32,
    matrix: i32,
    full_range: i32,
    planes: [*mut u8; 4],
    strides: [usize; 4],
}

const RGB8: i32 = 100;

#[link(name = "qv")]
extern "C" {
    fn qv_filter_create(name: *const c_char, error: *mut c_char, size: usize) -> *mut c_void;
    fn qv_filter_destroy(filter: *mut c_void);
    fn qv_filter_set(filter: *mut c_void, name: *const c_char, value: *const c_char, error: *mut c_char, size: usize) -> c_int;
    fn qv_filter_set_input(filter: *mut c_void, input: *const c_char, image: *const c_void, error: *mut c_char, size: usize) -> c_int;
    fn qv_filter_set_moment(filter: *mut c_void, time: f64, start: f64, end: f64);
    fn qv_filter_output(filter: *mut c_void, error: *mut c_char, size: usize) -> *mut c_void;
    fn qv_image_from_frame(frame: *const Frame, release: Option<extern "C" fn(*mut c_void)>, user: *mut c_void, error: *mut c_char, size: usize) -> *mut c_void;
    fn qv_image_destroy(image: *mut c_void);
    fn qv_render(context: *mut c_void, image: *const c_void, frame: *const Frame, error: *mut c_char, size: usize) -> c_int;
}

/// Calls a function that takes a buffer for its error last; its text when the result is null or zero.
fn call<T: Default + PartialEq>(function: impl FnOnce(*mut c_char, usize) -> T) -> Result<T, String> {
    let mut error = [0 as c_char; 256];
    let result = function(error.as_mut_ptr(), error.len());
    if result != T::default() {
        return Ok(result);
    }
    Err(unsafe { CStr::from_ptr(error.as_ptr()) }.to_string_lossy().into_owned())
}

struct Handle(*mut c_void, unsafe extern "C" fn(*mut c_void));

impl Handle {
    fn new(destroy: unsafe extern "C" fn(*mut c_void), make: impl FnOnce(*mut c_char, usize) -> *mut c_void) -> Result<Handle, String> {
        call(|error, size| make(error, size) as usize).map(|made| Handle(made as *mut c_void, destroy))
    }
}

impl Drop for Handle {
    fn drop(&mut self) {
        unsafe { (self.1)(self.0) }
    }
}

fn frame(pixels: &mut [u8], width: i32, height: i32) -> Frame {
    let mut frame = Frame { size: std::mem::size_of::<Frame>(), format: RGB8, width, height, matrix: 0, full_range: 0, planes: [std::ptr::null_mut(); 4], strides: [0; 4] };
    frame.planes[0] = pixels.as_mut_ptr();
    frame.strides[0] = width as usize * 3;
    frame
}

fn run() -> Result<(), String> {
    let arguments: Vec<String> = std::env::args().collect();
    if arguments.len() < 4 {
        return Err("give a class, a width and a height".into());
    }
    let side = |text: &str| text.parse::<i32>().map_err(|_| format!("{} is not a number of pixels", text));
    let (width, height) = (side(&arguments[2])?, side(&arguments[3])?);
    let mut pixels = vec![0u8; width as usize * height as usize * 3];
    std::io::stdin().read_exact(&mut pixels).map_err(|error| error.to_string())?;

    let text = |value: &str| CString::new(value).map_err(|error| error.to_string());
    let name = text(&arguments[1])?;
    let filter = Handle::new(qv_filter_destroy, |error, size| unsafe { qv_filter_create(name.as_ptr(), error, size) })?;
    for setting in &arguments[4..] {
        let (name, value) = setting.split_once('=').ok_or(format!("{} is not name=value", setting))?;
        let (name, value) = (text(name)?, text(value)?);
        call(|error, size| unsafe { qv_filter_set(filter.0, name.as_ptr(), value.as_ptr(), error, size) })?;
    }
    let memory = frame(&mut pixels, width, height);
    let image = Handle::new(qv_image_destroy, |error, size| unsafe { qv_image_from_frame(&memory, None, std::ptr::null_mut(), error, size) })?;
    let role = text("frame")?;
    call(|error, size| unsafe { qv_filter_set_input(filter.0, role.as_ptr(), image.0, error, size) })?;
    unsafe { qv_filter_set_moment(filter.0, 1.0, 0.0, 3.0) };
    let output = Handle::new(qv_image_destroy, |error, size| unsafe { qv_filter_output(filter.0, error, size) })?;
    call(|error, size| unsafe { qv_render(std::ptr::null_mut(), output.0, &memory, error, size) })?;
    std::io::stdout().write_all(&pixels).map_err(|error| error.to_string())
}

fn main() {
    if let Err(cause) = run() {
        eprintln!("rust-render: {}", cause);
        std::process::exit(1);
    }
}
